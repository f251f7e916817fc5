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
constexpr size_t block_size = 1 << 16;
constexpr const char *access_list = "system.posix_acl_access";

// Calls until the call was not interrupted.
template<class Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

int open_at(int directory, const char *name, int flags, mode_t mode = 0) {
    return uninterrupted([&] { return openat(directory, name, flags | O_CLOEXEC, mode); });
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

// Hands the bytes of the file to `consume` block by block, until that returns false.
template<class Consume> bool read_all(int descriptor, Consume consume) {
    std::vector<char> block(block_size);
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return read(descriptor, block.data(), block.size()); });
        if (count <= 0)
            return count == 0;
        if (!consume(std::string_view(block.data(), static_cast<size_t>(count))))
            return false;
    }
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

// The directory may have given a new file an access list that the old one does not have.
bool remove_access_list(int descriptor) {
    return fremovexattr(descriptor, access_list) == 0 || errno == ENODATA || errno == ENOTSUP;
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

// True when the target's name cannot be given to another file.
bool is_refused_rename(int error) {
    return error == EBUSY || error == EXDEV || error == EPERM || error == EACCES;
}

} // namespace

// An interrupted close has closed: everything was synced before, so nothing is lost with it.
bool replace_file_t::file_t::close() {
    const int open_descriptor = std::exchange(descriptor, -1);
    return open_descriptor < 0 || ::close(open_descriptor) == 0 || errno == EINTR;
}

replace_file_t::~replace_file_t() {
    const int error = errno;
    beside.close(); // its room is given back only then
    if (!beside_name.empty())
        unlinkat(directory.descriptor, beside_name.c_str(), 0);
    if (created)
        unlinkat(directory.descriptor, target_name.c_str(), 0);
    else if (touched && old_contents)
        put_old_contents_back();
    errno = error;
}

bool replace_file_t::open_target(const char *path) {
    target.descriptor = open_at(AT_FDCWD, path, O_WRONLY);
    if (!target.is_open() && errno == ENOENT) {
        target.descriptor = open_at(AT_FDCWD, path, O_WRONLY | O_CREAT, 0666);
        created = target.is_open();
    }
    return target.is_open() && fstat(target.descriptor, &status) == 0;
}

bool replace_file_t::open_beside() {
    const std::string stem = "." + target_name + ".infraconvert-" + std::to_string(getpid()) + "-";
    for (int attempt = 0; attempt < attempts_for_a_free_name; attempt++) {
        std::string name = stem + std::to_string(attempt);
        beside.descriptor =
            open_at(directory.descriptor, name.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
        if (beside.is_open())
            beside_name = std::move(name);
        if (beside.is_open() || errno != EEXIST)
            break;
    }
    return beside.is_open();
}

// Opens the directory where the target has its name, behind all symbolic links. It stays closed
// where there is none: a link of the process file system can show a file that has no name, or one
// whose name here is another file's.
bool replace_file_t::find_name() {
    const std::unique_ptr<char, decltype(&free)> real(realpath(target_path.c_str(), nullptr), free);
    if (!real)
        return errno == ENOENT || errno == EACCES || errno == ENAMETOOLONG;
    const std::string real_path = real.get();
    const size_t slash = real_path.rfind('/');
    const std::string directory_name = real_path.substr(0, std::max<size_t>(slash, 1));
    target_name = real_path.substr(slash + 1);
    struct stat named;
    if (lstat(real_path.c_str(), &named) != 0)
        return false;
    if (named.st_dev == status.st_dev && named.st_ino == status.st_ino)
        directory.descriptor = open_at(AT_FDCWD, directory_name.c_str(), O_RDONLY | O_DIRECTORY);
    return true;
}

bool replace_file_t::begin(const char *path) {
    target_path = path;
    if (!open_target(path))
        return false;
    const bool is_single_file = S_ISREG(status.st_mode) && status.st_nlink == 1;
    if (is_single_file && !find_name())
        return false;
    return (directory.is_open() && open_beside()) || keep_old_contents();
}

bool replace_file_t::write(std::string_view bytes) {
    return beside.is_open() ? write_all(beside.descriptor, bytes) : write_in_place(bytes);
}

bool replace_file_t::take_over_attributes() const {
    const int to = beside.descriptor;
    return remove_access_list(to) && fchown(to, status.st_uid, status.st_gid) == 0 &&
           fchmod(to, status.st_mode & ~static_cast<mode_t>(S_IFMT)) == 0 &&
           copy_attributes(target.descriptor, to);
}

// A target that may be written but not read has no old contents to put back.
bool replace_file_t::keep_old_contents() {
    if (!S_ISREG(status.st_mode))
        return true;
    file_t old;
    old.descriptor = open_at(AT_FDCWD, target_path.c_str(), O_RDONLY);
    if (!old.is_open())
        return errno == EACCES;
    std::string contents;
    const bool complete = read_all(old.descriptor, [&](std::string_view bytes) {
        contents += bytes;
        return true;
    });
    if (complete)
        old_contents = std::move(contents);
    return complete;
}

void replace_file_t::put_old_contents_back() const {
    file_t again;
    again.descriptor = open_at(AT_FDCWD, target_path.c_str(), O_WRONLY);
    const auto size = static_cast<off_t>(old_contents->size());
    if (write_all(again.descriptor, *old_contents) && ftruncate(again.descriptor, size) == 0)
        sync(again.descriptor);
}

// False when there is no room; a file system that cannot reserve tells nothing about that.
bool replace_file_t::reserve(off_t size) {
    touched = true;
    if (size <= status.st_size)
        return true;
    const auto call = [&] { return fallocate(target.descriptor, FALLOC_FL_KEEP_SIZE, 0, size); };
    return uninterrupted(call) == 0 || (errno != ENOSPC && errno != EDQUOT && errno != EFBIG);
}

bool replace_file_t::write_in_place(std::string_view bytes) {
    const off_t end = written + static_cast<off_t>(bytes.size());
    if (!reserve(end) || !write_all(target.descriptor, bytes))
        return false;
    written = end;
    return true;
}

bool replace_file_t::copy_in_place() {
    file_t complete;
    complete.descriptor = open_at(directory.descriptor, beside_name.c_str(), O_RDONLY);
    struct stat size;
    return complete.is_open() && fstat(complete.descriptor, &size) == 0 && keep_old_contents() &&
           reserve(size.st_size) &&
           read_all(complete.descriptor,
                    [&](std::string_view bytes) { return write_in_place(bytes); }) &&
           finish_in_place();
}

bool replace_file_t::finish_in_place() {
    touched = true;
    const bool is_file = S_ISREG(status.st_mode);
    if (is_file && uninterrupted([&] { return ftruncate(target.descriptor, written); }) != 0)
        return false;
    if (!sync(target.descriptor) && (is_file || (errno != EINVAL && errno != EROFS)))
        return false;
    if (!target.close())
        return false;
    created = touched = false;
    return true;
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
        return is_refused_rename(errno) && copy_in_place();
    return sync(directory.descriptor) || errno == EINVAL || errno == EBADF;
}

} // namespace engine
