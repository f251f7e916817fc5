// The system calls behind a safe save. Every result is looked at; EINTR is only another try.

#include "engine/replace_file.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace engine {

namespace {

constexpr int attempts_for_a_free_name = 100;

// Calls until the call was not interrupted.
template<class Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

bool write_all(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

bool sync(int descriptor) {
    return uninterrupted([&] { return fsync(descriptor); }) == 0;
}

bool copy_attribute(int from, int to, const char *name) {
    const ssize_t size = fgetxattr(from, name, nullptr, 0);
    if (size < 0)
        return false;
    std::vector<char> value(static_cast<size_t>(size));
    return fgetxattr(from, name, value.data(), value.size()) == size &&
           fsetxattr(to, name, value.data(), value.size(), 0) == 0;
}

// The access list is one of the extended attributes.
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

} // namespace

bool replace_file_t::file_t::close() {
    const int open_descriptor = std::exchange(descriptor, -1);
    return open_descriptor < 0 || ::close(open_descriptor) == 0;
}

replace_file_t::~replace_file_t() {
    const int error = errno;
    remove_beside();
    if (created)
        unlinkat(directory.descriptor, target_name.c_str(), 0);
    errno = error;
}

bool replace_file_t::open_target(const char *path) {
    target.descriptor = open(path, O_WRONLY | O_CLOEXEC);
    if (!target.is_open() && errno == ENOENT) {
        target.descriptor = open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        created = target.is_open();
    }
    return target.is_open() && fstat(target.descriptor, &status) == 0;
}

bool replace_file_t::open_beside(const std::string &name) {
    const std::string stem = "." + name + ".infraconvert-" + std::to_string(getpid()) + "-";
    for (int attempt = 0; attempt < attempts_for_a_free_name; attempt++) {
        beside_name = stem + std::to_string(attempt);
        beside.descriptor = openat(directory.descriptor, beside_name.c_str(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (beside.is_open() || errno != EEXIST)
            break;
    }
    return beside.is_open();
}

bool replace_file_t::begin(const char *path) {
    if (!open_target(path))
        return false;
    const std::unique_ptr<char, decltype(&free)> real(realpath(path, nullptr), free);
    if (!real)
        return false;
    const std::string_view whole = real.get();
    const size_t slash = whole.rfind('/');
    target_name = whole.substr(slash + 1);
    const std::string directory_name(whole.substr(0, std::max<size_t>(slash, 1)));
    directory.descriptor = open(directory_name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool replaceable = S_ISREG(status.st_mode) && status.st_nlink == 1 && directory.is_open();
    if (replaceable)
        open_beside(target_name);
    return true;
}

bool replace_file_t::write(std::string_view bytes) {
    return beside.is_open() ? write_all(beside.descriptor, bytes) : write_in_place(bytes);
}

bool replace_file_t::write_in_place(std::string_view bytes) {
    const off_t end = written + static_cast<off_t>(bytes.size());
    const bool grows = end > status.st_size;
    if (grows && fallocate(target.descriptor, FALLOC_FL_KEEP_SIZE, 0, end) != 0 && errno == ENOSPC)
        return false;
    if (!write_all(target.descriptor, bytes))
        return false;
    written = end;
    return true;
}

bool replace_file_t::take_over_attributes() const {
    const int to = beside.descriptor;
    return fchown(to, status.st_uid, status.st_gid) == 0 &&
           fchmod(to, status.st_mode & ~static_cast<mode_t>(S_IFMT)) == 0 &&
           copy_attributes(target.descriptor, to);
}

bool replace_file_t::copy_in_place() {
    file_t complete;
    complete.descriptor = openat(directory.descriptor, beside_name.c_str(), O_RDONLY | O_CLOEXEC);
    if (!complete.is_open())
        return false;
    std::vector<char> block(1 << 16);
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return read(complete.descriptor, block.data(), block.size()); });
        if (count < 0)
            return false;
        if (count == 0)
            return finish_in_place();
        if (!write_in_place({block.data(), static_cast<size_t>(count)}))
            return false;
    }
}

bool replace_file_t::finish_in_place() {
    const bool is_file = S_ISREG(status.st_mode);
    if (is_file && ftruncate(target.descriptor, written) != 0)
        return false;
    if (!sync(target.descriptor) && (is_file || (errno != EINVAL && errno != EROFS)))
        return false;
    created = false;
    return target.close();
}

bool replace_file_t::rename_over_target() {
    if (renameat(directory.descriptor, beside_name.c_str(), directory.descriptor,
                 target_name.c_str()) != 0)
        return false;
    beside_name.clear();
    created = false;
    return true;
}

bool replace_file_t::commit() {
    if (!beside.is_open())
        return finish_in_place();
    if (!take_over_attributes())
        return copy_in_place();
    if (!sync(beside.descriptor) || !beside.close())
        return false;
    if (!rename_over_target())
        return (errno == EBUSY || errno == EXDEV) && copy_in_place();
    return sync(directory.descriptor) || errno == EINVAL || errno == EBADF;
}

void replace_file_t::remove_beside() {
    if (!beside_name.empty())
        unlinkat(directory.descriptor, beside_name.c_str(), 0);
}

} // namespace engine
