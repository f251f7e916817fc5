// The logs are led elsewhere by an fopen() of the program, which takes the C library's place for
// the shared library too: what is tested is the library as it ships.

#include "support/converter_process.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string log_directory;      // empty: logs go where the library says
bool logs_fail_to_open = false; // as on a machine without /mnt/pss

bool is_log(std::string_view path) {
    return path.starts_with("/mnt/pss/") || path.starts_with("/bootflash/");
}

void redirect(FILE *stream, const std::string &path) {
    if (!freopen(path.c_str(), "w", stream))
        _exit(EXIT_FAILURE);
}

} // namespace

extern "C" __attribute__((visibility("default"))) FILE *fopen(const char *path, const char *mode) {
    // On machines of 32 bits the library calls this one, and "fopen" would be one of long ago.
    static const auto next =
        reinterpret_cast<FILE *(*)(const char *, const char *)>(dlsym(RTLD_NEXT, "fopen64"));
    if (!path || !is_log(path))
        return next(path, mode);
    if (logs_fail_to_open) {
        errno = ENOENT;
        return nullptr;
    }
    char redirected[PATH_MAX]; // without an allocation, which a test may let fail
    snprintf(redirected, sizeof redirected, "%s%s", log_directory.c_str(), strrchr(path, '/'));
    return next(redirected, mode);
}

namespace support {

void leave_process(int status) {
#ifdef INFRACONVERT_COVERAGE // the counters are written then, however little a test lets be written
    rlimit files = {};
    getrlimit(RLIMIT_FSIZE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_FSIZE, &files);
    exit(status);
#else
    _exit(status);
#endif
}

void lead_logs_to(const std::string &directory) { log_directory = directory; }

outcome_t run_in_process(const std::function<int()> &call, bool logs_open) {
    const temporary_directory_t place;
    const std::string logs = place.path() + "/logs";
    std::filesystem::create_directory(logs);
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        redirect(stdout, place.path() + "/output");
        redirect(stderr, place.path() + "/errors");
        lead_logs_to(logs);
        logs_fail_to_open = !logs_open;
        const int status = call();
        fflush(nullptr);
        leave_process(status & 0xFF);
    }
    int ended = 0;
    waitpid(child, &ended, 0);
    outcome_t outcome;
    outcome.crashed = !WIFEXITED(ended);
    outcome.status = WEXITSTATUS(ended);
    outcome.output = read_file(place.path() + "/output");
    outcome.errors = read_file(place.path() + "/errors");
    for (const auto &entry : std::filesystem::directory_iterator(logs))
        outcome.logs[entry.path().filename()] = read_file(entry.path());
    return outcome;
}

} // namespace support
