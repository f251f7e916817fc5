// A hard link would be simpler, but a file with a second link is not replaced by the safe save: it
// is written in place, and the backup with it.

#include "commands/backup.h"

#include "base/errors.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace infraconvert {

namespace {

class descriptor_t {
  public:
    explicit descriptor_t(int opened) : number(opened) {}
    descriptor_t(const descriptor_t &) = delete;
    descriptor_t &operator=(const descriptor_t &) = delete;
    ~descriptor_t() {
        if (number >= 0)
            close(number);
    }
    operator int() const { return number; }

  private:
    const int number;
};

bool write_all(int to, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(to, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(count > 0 ? static_cast<size_t>(count) : 0);
    }
    return true;
}

// The access list is one of them. What cannot be copied only makes the backup narrower.
void copy_attributes(int from, int to) {
    const ssize_t size = flistxattr(from, nullptr, 0);
    std::vector<char> names(size > 0 ? static_cast<size_t>(size) : 0);
    if (names.empty() || flistxattr(from, names.data(), names.size()) != size)
        return;
    for (const char *name = names.data(); name < names.data() + size; name += strlen(name) + 1) {
        const ssize_t length = fgetxattr(from, name, nullptr, 0);
        std::vector<char> value(length > 0 ? static_cast<size_t>(length) : 0);
        if (length >= 0 && fgetxattr(from, name, value.data(), value.size()) == length)
            fsetxattr(to, name, value.data(), value.size(), 0);
    }
}

bool copy_status(int from, int to) {
    struct stat status;
    if (fstat(from, &status) != 0)
        return false;
    if (fchown(to, status.st_uid, status.st_gid) == 0) {
        if (fchmod(to, status.st_mode & 07777) != 0)
            return false;
        copy_attributes(from, to);
    }
    const timespec times[] = {status.st_atim, status.st_mtim};
    return futimens(to, times) == 0;
}

bool sync_directory_of(const std::string &path) {
    const auto directory = std::filesystem::absolute(path).parent_path();
    const descriptor_t opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return opened >= 0 && (fsync(opened) == 0 || errno == EINVAL || errno == EBADF);
}

} // namespace

void refuse_existing_backup(const std::string &backup) {
    struct stat ignored;
    if (lstat(backup.c_str(), &ignored) == 0)
        throw usage_error("the backup " + backup +
                          " exists already; move it away or choose another --backup=SUFFIX");
}

void make_backup(const std::string &file, std::string_view bytes, const std::string &backup) {
    const descriptor_t from(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    const descriptor_t to(
        open(backup.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    const bool made = from >= 0 && to >= 0 && write_all(to, bytes) && copy_status(from, to) &&
                      fsync(to) == 0 && sync_directory_of(backup);
    if (made)
        return;
    const int error = errno;
    if (to >= 0)
        unlink(backup.c_str());
    throw run_error("cannot make the backup " + backup + ": " + strerror(error) +
                    "; nothing is written");
}

} // namespace infraconvert
