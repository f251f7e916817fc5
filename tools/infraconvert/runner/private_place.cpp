#include "runner/private_place.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/magic.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace runner {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view name_pattern = "infraconvert-private-XXXXXX";
constexpr const char *shared_memory = "/dev/shm";
constexpr const char *lock_name = "in-use";

std::runtime_error no_place(const fs::path &path) {
    return std::runtime_error("cannot make a temporary directory " + path.string() + ": " +
                              strerror(errno));
}

bool is_same_file(int descriptor, const fs::path &path) {
    struct stat opened, named;
    return fstat(descriptor, &opened) == 0 && lstat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

// Makes the lock of a new place; -1 when another process took the place for one that has no owner,
// and removed it.
int lock_new(const fs::path &directory) {
    const fs::path file = directory / lock_name;
    const int lock = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (lock < 0 && errno != ENOENT)
        throw no_place(file);
    if (lock >= 0 && (flock(lock, LOCK_EX) != 0 || !is_same_file(lock, file))) {
        close(lock);
        return -1;
    }
    return lock;
}

bool is_private_directory(const fs::path &path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

// The lock goes last, so that a place whose removal is cut short can still be told.
void remove_place(const fs::path &directory) {
    std::error_code ignored;
    for (const auto &entry : fs::directory_iterator(directory, ignored)) {
        if (entry.path().filename() != lock_name)
            fs::remove_all(entry.path(), ignored);
    }
    fs::remove_all(directory, ignored);
}

// A place without a lock is one whose owner was killed in its first moment, or lives in it: it is
// empty then, and its owner makes another.
void remove_if_left(const fs::path &directory) {
    const int lock = open((directory / lock_name).c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    if (lock < 0)
        rmdir(directory.c_str());
    else if (flock(lock, LOCK_EX | LOCK_NB) == 0)
        remove_place(directory);
    if (lock >= 0)
        close(lock);
}

void remove_left_below(const fs::path &parent) {
    const std::string_view start = name_pattern.substr(0, name_pattern.find('X'));
    std::error_code ignored;
    for (const auto &entry : fs::directory_iterator(parent, ignored)) {
        const std::string name = entry.path().filename();
        if (name.starts_with(start) && name.size() == name_pattern.size() &&
            is_private_directory(entry.path()))
            remove_if_left(entry.path());
    }
}

bool is_in_memory(const fs::path &directory, uint64_t bytes) {
    struct statfs status;
    return statfs(directory.c_str(), &status) == 0 &&
           (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC) &&
           access(directory.c_str(), W_OK | X_OK) == 0 &&
           (status.f_type == RAMFS_MAGIC ||
            status.f_bavail * static_cast<uint64_t>(status.f_bsize) >= bytes);
}

} // namespace

private_place_t::private_place_t(const fs::path &parent) {
    std::error_code ignored;
    const fs::path real_parent = fs::weakly_canonical(fs::absolute(parent), ignored);
    while (lock < 0) {
        std::string name = real_parent / name_pattern;
        if (!mkdtemp(name.data()))
            throw no_place(name);
        directory = name; // which another process may have taken for a place without an owner
        lock = lock_new(directory);
    }
}

private_place_t::~private_place_t() {
    remove_place(directory);
    close(lock);
}

void remove_left_places() {
    remove_left_below(temporary_directory());
    remove_left_below(shared_memory);
}

fs::path temporary_directory() {
    const char *named = getenv("TMPDIR");
    return named && *named ? named : "/tmp";
}

fs::path directory_in_memory(uint64_t bytes) {
    for (const fs::path &directory : {temporary_directory(), fs::path(shared_memory)}) {
        if (is_in_memory(directory, bytes))
            return directory;
    }
    return {};
}

} // namespace runner
