// The library names its logs by fixed paths and opens them with fopen. A program's own definition
// of fopen takes the C library's place for the shared library too, so the logs can be kept apart
// without a mount and without another build of the library.

#include "runner/log_redirection.h"

#include <cstdio>
#include <dlfcn.h>
#include <optional>
#include <string_view>

namespace {

constexpr std::string_view log_directories[] = {"/mnt/pss/", "/bootflash/"};

std::optional<std::string> log_directory;

std::string redirected(std::string_view path) {
    for (const std::string_view directory : log_directories) {
        if (log_directory && path.starts_with(directory))
            return log_directory->empty()
                       ? "/dev/null"
                       : *log_directory + '/' + std::string(path.substr(path.rfind('/') + 1));
    }
    return std::string(path);
}

} // namespace

void redirect_logs_to(const std::string &directory) { log_directory = directory; }

extern "C" FILE *fopen(const char *path, const char *mode) {
    using fopen_t = FILE *(*)(const char *, const char *);
    // On machines of 32 bits this one is fopen64 too, and "fopen" would be one of long ago.
    static const auto next = reinterpret_cast<fopen_t>(dlsym(RTLD_NEXT, "fopen64"));
    // cppcheck-suppress returnDanglingLifetime
    return next(redirected(path).c_str(), mode);
}
