// Runs a call in a child process that stops at each of its system calls, where it can be made to
// fail, to do half of its work, or to be the last thing that the process ever asked for. The
// library is the one that ships, and so is the C library below it.
#pragma once

#include <functional>
#include <string>

namespace faults {

// A system call that is about to be made.
struct system_call_t {
    std::string kind;    // such as "open", for all forms of it; empty: of no interest here
    std::string file;    // name of the file that it is about, without its directory
    bool writes = false; // opens for writing
};

struct verdict_t {
    enum what_t {
        pass,
        fail, // with `error`; a close still closes
        half, // does half of the bytes
        kill, // the process
    } what = pass;
    int error = 0;
};

struct traced_t {
    bool killed = false; // by a verdict
    bool crashed = false;
    int status = 0; // of the call
};

// Runs `call`, without its output, and asks `judge` about each system call in turn.
traced_t traced(const std::function<int()> &call,
                const std::function<verdict_t(const system_call_t &)> &judge);

} // namespace faults
