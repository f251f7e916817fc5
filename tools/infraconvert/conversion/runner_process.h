// infraconvert-run, the program that holds the library, as a child of this process: started by the
// first call, ended with this process.
#pragma once

#include "runner/protocol.h"

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <utility>

namespace infraconvert {

// The command's end of a socket, closed with its owner.
class socket_t {
  public:
    socket_t() = default;
    explicit socket_t(int opened) : number(opened) {}
    socket_t(socket_t &&other) noexcept : number(std::exchange(other.number, -1)) {}
    socket_t &operator=(socket_t &&other) noexcept {
        std::swap(number, other.number);
        return *this;
    }
    ~socket_t();

    int descriptor() const { return number; }

  private:
    int number = -1;
};

// What a call is told on.
struct answers_t {
    socket_t socket;
    pid_t program; // that answers
};

// For all threads of this process.
class runner_process_t {
  public:
    static runner_process_t &shared();
    runner_process_t(const runner_process_t &) = delete;
    runner_process_t &operator=(const runner_process_t &) = delete;
    // On return infraconvert-run is gone, and with it what was private.
    ~runner_process_t();

    // Makes a request. The job is sent, and the answers are read, on the socket that is returned,
    // where a wait for the next one ends after `patience`. Starts infraconvert-run when it does not
    // run. Throws run_error_t.
    answers_t request(const runner::request_t &request, std::chrono::seconds patience);

    // Takes notice that the program which was to answer does so no more. Returns how it ended.
    std::string note_end(pid_t program);

  private:
    runner_process_t() = default;
    void start();
    void send_request(const runner::request_t &request, int answers) const;

    std::mutex lock;
    socket_t control;
    std::map<pid_t, std::string> ends; // of the programs that ended of their own
};

// What a process's status, as wait() gives it, says, such as "was killed by signal 9 (Killed)".
std::string fate(int status);

} // namespace infraconvert
