// WebAssembly has no processes. What a call did is undone instead: its memory and its open files
// are again what they were, as if it had run in a process of its own.

#include "support/converter_process.h"

#include <cstdio>
#include <filesystem>
#include <unistd.h>

// forked_memory.js; -1 when the call did not return.
extern "C" int undone(int (*call)(const void *argument), const void *argument,
                      const void *heap_end);

namespace support {

namespace {

namespace fs = std::filesystem;

struct redirected_t {
    const std::function<int()> &call;
    std::string output, errors;
};

int run(const void *argument) {
    const auto &[call, output, errors] = *static_cast<const redirected_t *>(argument);
    if (!freopen(output.c_str(), "w", stdout) || !freopen(errors.c_str(), "w", stderr))
        return -1;
    const int status = call();
    fflush(nullptr);
    return status & 0xFF;
}

} // namespace

// The files of the program are its own: logs land where the library says.
outcome_t run_in_process(const std::function<int()> &call, bool logs_open) {
    const temporary_directory_t place;
    constexpr const char *log_directories[] = {"/mnt/pss", "/bootflash"};
    for (const char *directory : log_directories) {
        fs::remove_all(directory);
        if (logs_open)
            fs::create_directories(directory);
    }
    fflush(nullptr);
    const redirected_t redirected = {call, place.path() + "/output", place.path() + "/errors"};
    const int status = undone(run, &redirected, sbrk(0));
    outcome_t outcome;
    outcome.crashed = status == -1;
    outcome.status = status;
    outcome.output = read_file(redirected.output);
    outcome.errors = read_file(redirected.errors);
    for (const char *directory : log_directories) {
        if (!logs_open)
            break;
        for (const auto &entry : fs::directory_iterator(directory))
            outcome.logs[entry.path().filename()] = read_file(entry.path());
    }
    return outcome;
}

} // namespace support
