// Calls of Linux that the library and the command make and this platform does not have. Most are
// refused: both know file systems that refuse them, and do without.

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <sys/types.h>
#include <unistd.h>

extern "C" {

static int refused(int error) {
    errno = error;
    return -1;
}

// Nobody comes between the two steps, for each instance is alone with its files.
int renameat2(int from_directory, const char *from, int to_directory, const char *to,
              unsigned int flags) {
    if (flags != RENAME_NOREPLACE)
        return refused(EINVAL);
    if (faccessat(to_directory, to, F_OK, 0) == 0)
        return refused(EEXIST);
    return renameat(from_directory, from, to_directory, to);
}

int fallocate(int, int, off_t, off_t) { return refused(ENOTSUP); }

// Files have no flags, and no stream is a terminal.
int ioctl(int, int, ...) { return refused(ENOTTY); }

ssize_t fgetxattr(int, const char *, void *, size_t) { return refused(ENOTSUP); }
ssize_t flistxattr(int, char *, size_t) { return refused(ENOTSUP); }
int fsetxattr(int, const char *, const void *, size_t, int) { return refused(ENOTSUP); }
int fremovexattr(int, const char *) { return refused(ENOTSUP); }

// One processor, for there are no threads.
int sched_getaffinity(pid_t, size_t, cpu_set_t *) { return refused(ENOSYS); }
int __sched_cpucount(size_t, const cpu_set_t *) { return 1; }

ssize_t getrandom(void *bytes, size_t size, unsigned int) {
    return getentropy(bytes, size) == 0 ? static_cast<ssize_t>(size) : -1;
}
}
