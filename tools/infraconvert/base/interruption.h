// What SIGINT, SIGTERM and SIGHUP do: they end the command where it stands, by the signal, after
// what is private is removed. Only what must not stay half done holds them off.
#pragma once

namespace infraconvert {

// From now on the signals are handled so. One that is ignored, as by nohup, stays ignored.
void handle_interruptions();

// `step` is taken before a signal ends the command. It may do only what a signal's handler may, and
// is kept for good; there is room for two.
void before_ending(void (*step)());

// What a signal that ends the command says on standard error: a literal, or null for nothing.
void say_when_ending(const char *words);

// Thrown by last_call(); whoever holds the signals off ends the command when he lets go. It is no
// std::exception, so that nobody takes it for a failure that he can tell of and go on.
struct interrupted_t {};

// While one lives, the signals wait. Several may hold them off at once, also in one thread: the
// last one to let go ends the command when one came.
class uninterrupted_t {
  public:
    // Holds nothing off unless `really`.
    explicit uninterrupted_t(bool really = true);
    uninterrupted_t(const uninterrupted_t &) = delete;
    uninterrupted_t &operator=(const uninterrupted_t &) = delete;
    ~uninterrupted_t();

    // The moment before what was prepared is made to count. Throws interrupted_t when a signal came
    // until now.
    static void last_call();
    // What was done counts, and the exit status will tell it: no signal ends the command any more.
    static void committed();

  private:
    const bool holds;
};

} // namespace infraconvert
