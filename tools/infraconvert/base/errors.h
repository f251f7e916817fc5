// How a command ends: the exit statuses, in one table for all commands, and the errors that lead to
// them. The message of an error goes to standard error.
#pragma once

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

namespace infraconvert {

constexpr int exit_done = 0;
constexpr int exit_failed = 1;
constexpr int exit_usage = 2;
constexpr int exit_would_change = 3;
constexpr int exit_findings = 4;
constexpr int exit_unusable = 5;
constexpr int exit_trouble = 6;

struct exit_status_t {
    int number;
    const char *meaning; // as the help shows it
};

// Where several apply, such as to many configurations, the one that stands first here is the
// status: what only a person can mend comes before what another try may mend, and that before what
// is to be read in the result, which is not complete then.
constexpr exit_status_t exit_statuses[] = {
    {exit_usage, "the arguments are wrong"},
    {exit_failed, "a conversion failed"},
    {exit_unusable, "a configuration or a plan cannot be read or used"},
    {exit_trouble, "something else was in the way; another try may succeed"},
    {exit_findings, "something would be lost (audit, convert)"},
    {exit_would_change, "something would change (preview --exit-code)"},
    {exit_done, "done"},
};

// The one of two statuses that wins.
constexpr int worse(int one, int other) {
    const auto *first =
        std::find_if(std::begin(exit_statuses), std::end(exit_statuses),
                     [&](const exit_status_t &s) { return s.number == one || s.number == other; });
    return first->number;
}

struct command_error_t : std::runtime_error {
    command_error_t(const std::string &message, int status)
        : runtime_error(message), exit_status(status) {}
    int exit_status;
};

// What the user asks for is not to be had with these arguments.
struct usage_error_t : command_error_t {
    explicit usage_error_t(const std::string &message) : command_error_t(message, exit_usage) {}
};

// What is to be converted, or the plan to do so, cannot be read or used.
struct input_error_t : command_error_t {
    explicit input_error_t(const std::string &message) : command_error_t(message, exit_unusable) {}
};

// The conversion itself came out otherwise than it has to.
struct conversion_error_t : command_error_t {
    explicit conversion_error_t(const std::string &message)
        : command_error_t(message, exit_failed) {}
};

// The machine, or somebody else at work on it, was in the way.
struct run_error_t : command_error_t {
    explicit run_error_t(const std::string &message) : command_error_t(message, exit_trouble) {}
};

} // namespace infraconvert
