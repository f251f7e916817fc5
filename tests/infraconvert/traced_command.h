// The command, stopped at each of its system calls, to be sent a signal at one of them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <sys/ptrace.h>
#include <vector>

namespace support {

struct traced_command_t {
    using call_t = __ptrace_syscall_info;

    std::filesystem::path directory; // where it runs
    std::filesystem::path room;      // where its private copies go
    std::vector<std::string> arguments;
    int input = -1;       // standard input, or none
    bool ignores = false; // signals that interrupt

    // Sends the signal at the first call that is `chosen`. Returns the status as wait() gives it.
    int run(const std::function<bool(const call_t &)> &chosen, int signal) const;

  private:
    int start() const;
};

} // namespace support
