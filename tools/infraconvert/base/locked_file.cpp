#include "base/locked_file.h"

#include "base/errors.h"
#include "base/files.h"
#include "base/quoting.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace infraconvert {

namespace {

bool is_same_time(const timespec &one, const timespec &other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool is_same(const struct stat &before, const struct stat &now) {
    return before.st_dev == now.st_dev && before.st_ino == now.st_ino &&
           before.st_size == now.st_size && is_same_time(before.st_mtim, now.st_mtim) &&
           before.st_mode == now.st_mode && before.st_uid == now.st_uid &&
           before.st_gid == now.st_gid;
}

} // namespace

void locked_file_t::open(const std::string &file) {
    opened = engine::open_at(AT_FDCWD, file.c_str(), O_RDONLY | O_NONBLOCK);
    if (!opened.is_open() || fstat(opened.descriptor(), &status) != 0)
        throw input_error_t(quoted_name(file) + ": " + strerror(errno));
    if (!S_ISREG(status.st_mode) || engine::lock(opened.descriptor()))
        return;
    if (errno == EWOULDBLOCK)
        throw run_error_t(quoted_name(file) +
                          " is locked: somebody else is converting it; nothing is written");
}

// Between the opening and the locking somebody else may have let go of the file that he replaced.
locked_file_t::locked_file_t(const std::string &file) : path(file) {
    struct stat named = {};
    do
        open(file);
    while (stat(file.c_str(), &named) == 0 &&
           (named.st_dev != status.st_dev || named.st_ino != status.st_ino));
    fstat(opened.descriptor(), &status);
}

void locked_file_t::look_again(std::string_view expected) const {
    struct stat now;
    if (!S_ISREG(status.st_mode))
        return;
    // The time of the last change tells of an access list too.
    const bool untouched = stat(path.c_str(), &now) == 0 && is_same(status, now) &&
                           is_same_time(status.st_ctim, now.st_ctim);
    if (!untouched || !is(opened.descriptor(), expected))
        throw run_error_t(quoted_name(path) +
                          " has changed during the conversion; nothing is written");
}

// An edit within one tick of the clock leaves the times as they were.
bool locked_file_t::is(int replaced, std::string_view expected) const {
    struct stat now;
    return fstat(replaced, &now) == 0 && is_same(status, now) &&
           lseek(replaced, 0, SEEK_SET) == 0 && holds(replaced, expected);
}

} // namespace infraconvert
