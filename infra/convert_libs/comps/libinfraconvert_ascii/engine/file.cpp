#include "engine/file.h"

#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace engine {

namespace {

constexpr const char *access_list = "system.posix_acl_access";

// Those of the flags that say how to store a file, not how it is stored.
constexpr unsigned int settable_flags = (FS_FL_USER_MODIFIABLE | FS_NOCOW_FL) &
                                        ~static_cast<unsigned int>(FS_IMMUTABLE_FL | FS_APPEND_FL);

bool copy_attribute(int from, int to, const char *name) {
    const ssize_t size = fgetxattr(from, name, nullptr, 0);
    if (size < 0)
        return false;
    std::vector<char> value(static_cast<size_t>(size));
    return fgetxattr(from, name, value.data(), value.size()) == size &&
           fsetxattr(to, name, value.data(), value.size(), 0) == 0;
}

} // namespace

// An interrupted close has closed: whoever has to know that the bytes have arrived syncs first.
bool file_t::close() {
    const int open_number = std::exchange(number, -1);
    return open_number < 0 || ::close(open_number) == 0 || errno == EINTR;
}

file_t open_at(int directory, const char *name, int flags, mode_t mode) {
    return file_t(uninterrupted([&] { return openat(directory, name, flags | O_CLOEXEC, mode); }));
}

bool write_all(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        errno = EIO; // for a device that takes nothing and gives no reason
        const ssize_t count =
            uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

ssize_t read_block(int descriptor, std::vector<char> &block) {
    return uninterrupted([&] { return read(descriptor, block.data(), block.size()); });
}

bool sync(int descriptor) {
    return uninterrupted([&] { return fsync(descriptor); }) == 0;
}

bool has_access_list(int descriptor) { return fgetxattr(descriptor, access_list, nullptr, 0) >= 0; }

bool remove_access_list(int descriptor) {
    return fremovexattr(descriptor, access_list) == 0 || errno == ENODATA || errno == ENOTSUP;
}

bool copy_attributes(int from, int to) {
    const ssize_t size = flistxattr(from, nullptr, 0);
    if (size < 0)
        return errno == ENOTSUP;
    std::vector<char> names(static_cast<size_t>(size));
    if (flistxattr(from, names.data(), names.size()) != size)
        return false;
    for (const char *name = names.data(); name < names.data() + size; name += strlen(name) + 1) {
        if (!copy_attribute(from, to, name))
            return false;
    }
    return true;
}

bool copy_flags(int from, int to) {
    unsigned int wanted = 0, given = 0;
    if (ioctl(from, FS_IOC_GETFLAGS, &wanted) != 0)
        return true; // a file system without flags
    if (ioctl(to, FS_IOC_GETFLAGS, &given) != 0)
        return false;
    if (((wanted ^ given) & settable_flags) == 0)
        return true;
    given = (given & ~settable_flags) | (wanted & settable_flags);
    return ioctl(to, FS_IOC_SETFLAGS, &given) == 0;
}

bool lock(int descriptor) {
    return uninterrupted([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
}

} // namespace engine
