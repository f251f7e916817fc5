// What SIGINT, SIGTERM and SIGHUP do: they end the command where it stands, by the signal, after
// what is private is removed. Only what must not stay half done holds them off.
#pragma once

namespace infraconvert {

// From now on the signals are handled so. One that is ignored, as by nohup, stays ignored.
void handle_interruptions();

// `step` is taken before a signal ends the command. It may do only what a signal's handler may, and
// is kept for good; there is room for one.
void before_ending(void (*step)());

// Thrown by last_call(); whoever holds the signals off ends the command when he lets go.
struct interrupted_t {};

// While one lives, the signals wait. Several threads may hold them off at once: the last one to let
// go ends the command when one came.
class uninterrupted_t {
  public:
    uninterrupted_t();
    uninterrupted_t(const uninterrupted_t &) = delete;
    uninterrupted_t &operator=(const uninterrupted_t &) = delete;
    ~uninterrupted_t();

    // The moment before what was prepared is made to count. Throws interrupted_t when a signal came
    // until now.
    static void last_call();
    // What was done counts, and the exit status will tell it: no signal ends the command any more.
    static void committed();
};

} // namespace infraconvert
