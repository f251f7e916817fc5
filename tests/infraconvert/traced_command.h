// The command, stopped at each of its system calls, to be sent a signal at one of them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <sys/ptrace.h>
#include <sys/types.h>
#include <vector>

namespace support {

struct traced_command_t {
    using call_t = __ptrace_syscall_info;

    std::filesystem::path directory; // where it runs
    std::filesystem::path room;      // where its private copies go
    std::vector<std::string> arguments;
    int input = -1;       // standard input, or none
    bool ignores = false; // signals that interrupt
    int output = -1;      // standard output, or none

    // Sends the signal at the first call that is `chosen`. Returns the status as wait() gives it.
    int run(const std::function<bool(const call_t &)> &chosen, int signal) const;

    // What becomes of a call.
    struct fate_t {
        int error = 0;        // it fails with this
        size_t most = ~0ul;   // of the bytes that it is to write, it writes these
        bool is_last = false; // behind it the process is killed
    };
    // Asks about each call, with the name of the file whose descriptor is its first argument.
    // Returns the status as wait() gives it. Only where can_judge.
    int run(const std::function<fate_t(const call_t &, const std::string &file)> &judge) const;
    static const bool can_judge; // the registers are those of one processor

  private:
    // Returns the process, stopped in front of its first instruction.
    pid_t start(int &status) const;
    [[noreturn]] void become_the_command() const;
};

} // namespace support
