// How a command ends early: the message goes to standard error, the kind decides the exit status.
#pragma once

#include <stdexcept>

namespace infraconvert {

// Exit statuses.
constexpr int exit_done = 0;
constexpr int exit_failed = 1;       // a conversion failed, or its result could not be written
constexpr int exit_usage = 2;        // wrong usage, or an input that cannot be used
constexpr int exit_would_change = 3; // preview --exit-code: the conversion would change something
constexpr int exit_findings = 4;     // something would be lost (audit, convert)

// What the user asked for cannot be started: wrong arguments or an unusable input.
struct usage_error : std::runtime_error {
    using runtime_error::runtime_error;
};

// It was started and failed.
struct run_error : std::runtime_error {
    using runtime_error::runtime_error;
};

} // namespace infraconvert
