// The steps of a safe save, and what is done where a file cannot be replaced.

#include "engine/replace_file.h"

#include "engine/left_behind.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace engine {

namespace {

using rights_t = replace_rules_t::rights_t;

constexpr int attempts_for_a_free_name = 16;

mode_t permissions(const struct stat &status) { return status.st_mode & 07777; }

// True when the target's name cannot be given to another file.
bool is_refused_rename(int error) {
    return error == EBUSY || error == EXDEV || error == EPERM || error == EACCES;
}

// Renames where `to` does not exist. A file system may not be able to do that at once; a kill
// between the two steps leaves the file both names.
bool rename_to_new(int directory, const char *from, const char *to) {
    if (renameat2(directory, from, directory, to, RENAME_NOREPLACE) == 0)
        return true;
    return errno == EINVAL && linkat(directory, from, directory, to, 0) == 0 &&
           unlinkat(directory, from, 0) == 0;
}

bool exchange_names(int directory, const char *one, const char *other) {
    return renameat2(directory, one, directory, other, RENAME_EXCHANGE) == 0;
}

} // namespace

replace_file_t::~replace_file_t() {
    const int error = errno;
    give_up_beside();
    if (touched && old_contents)
        put_old_contents_back();
    errno = error;
}

bool replace_file_t::open_target(const char *path) {
    target = open_at(AT_FDCWD, path, O_WRONLY | (rules.follows_link ? 0 : O_NOFOLLOW));
    if (!target.is_open())
        return errno == ENOENT;
    if (rules.must_be_new) {
        errno = EEXIST;
        return false;
    }
    return fstat(target.descriptor(), &status) == 0;
}

void replace_file_t::give_up_beside() {
    beside.close(); // its room is given back only then
    beside_lock.close();
    if (!beside_name.empty())
        unlinkat(directory.descriptor(), beside_name.c_str(), 0);
    beside_name.clear();
}

// The lock shows that the writer of the file beside is alive. Whoever removes what was left behind
// may have come between the making and the locking: then the lock is his, or the name is gone.
bool replace_file_t::hold_lock() const {
    struct stat made;
    const bool held = lock(beside_lock.descriptor()) || errno != EWOULDBLOCK;
    if (fstat(beside_lock.descriptor(), &made) != 0)
        return false;
    errno = EEXIST;
    return held && made.st_nlink > 0;
}

bool replace_file_t::claim_beside(std::string name) {
    const bool is_private = target.is_open() || rules.rights != rights_t::of_target;
    beside = open_at(directory.descriptor(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL,
                     is_private ? 0600 : 0666);
    if (!beside.is_open())
        return false;
    beside_name = std::move(name); // allocates nothing: the file would stay
    beside_lock = file_t(fcntl(beside.descriptor(), F_DUPFD_CLOEXEC, 0));
    return beside_lock.is_open() && hold_lock();
}

bool replace_file_t::open_beside() {
    remove_left_behind(directory.descriptor(), target_name, status.st_uid);
    for (int attempt = 0; attempt < attempts_for_a_free_name; attempt++) {
        if (claim_beside(name_beside(target_name)))
            return true;
        const int error = errno;
        give_up_beside();
        errno = error;
        if (error != EEXIST)
            break;
    }
    return false;
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
        directory = open_at(AT_FDCWD, directory_name.c_str(), O_RDONLY | O_DIRECTORY);
    return true;
}

// Of a target that does not exist. A link that leads nowhere does: nothing is made behind it.
bool replace_file_t::find_new_name() {
    struct stat named;
    if (lstat(target_path.c_str(), &named) == 0) {
        errno = ENOENT;
        return false;
    }
    const size_t slash = target_path.rfind('/');
    const bool has_slash = slash != std::string::npos;
    target_name = has_slash ? target_path.substr(slash + 1) : target_path;
    const std::string directory_name = has_slash ? target_path.substr(0, slash + 1) : ".";
    directory = open_at(AT_FDCWD, directory_name.c_str(), O_RDONLY | O_DIRECTORY);
    if (directory.is_open() && target_name.empty())
        errno = EISDIR;
    return directory.is_open() && !target_name.empty();
}

bool replace_file_t::begin(const char *path) {
    target_path = path;
    if (!open_target(path))
        return false;
    if (!target.is_open())
        return find_new_name() && open_beside();
    const bool is_single_file = S_ISREG(status.st_mode) && status.st_nlink == 1;
    if (is_single_file && !find_name())
        return false;
    return (directory.is_open() && open_beside()) || keep_old_contents();
}

bool replace_file_t::write(std::string_view bytes) {
    return beside.is_open() ? write_all(beside.descriptor(), bytes) : write_in_place(bytes);
}

// What the rights of a new file are cut down to by those of the target that it replaces.
mode_t replace_file_t::narrowed(mode_t mode) const {
    return mode & 0777 & (target.is_open() ? permissions(status) : mode_t{0777});
}

// The mode comes last: until then the file is its owner's alone, and the group bits mean other
// people with an access list than without.
bool replace_file_t::take_over_rights() const {
    const int to = beside.descriptor();
    struct stat source = {};
    if (rules.rights == rights_t::of_source) {
        if (fstat(rules.source, &source) != 0)
            return false;
        const bool given = fchown(to, source.st_uid, source.st_gid) == 0 &&
                           remove_access_list(to) && copy_attributes(rules.source, to);
        const timespec times[] = {source.st_atim, source.st_mtim};
        if (rules.keeps_times && futimens(to, times) != 0)
            return false;
        if (given)
            return fchmod(to, narrowed(source.st_mode)) == 0;
    }
    return fchmod(to, 0600) == 0 && remove_access_list(to) && fchmod(to, narrowed(0600)) == 0;
}

bool replace_file_t::take_over_attributes() const {
    if (rules.rights != rights_t::of_target)
        return take_over_rights();
    if (!target.is_open())
        return true;
    const int from = target.descriptor(), to = beside.descriptor();
    return fchown(to, status.st_uid, status.st_gid) == 0 && remove_access_list(to) &&
           copy_attributes(from, to) && copy_flags(from, to) &&
           fchmod(to, permissions(status)) == 0;
}

// A target that is written in place keeps its owner and group. It is for its owner alone where
// these, or an access list, make its mode say something else than the source's.
bool replace_file_t::narrow_target() const {
    if (rules.rights == rights_t::of_target || !S_ISREG(status.st_mode))
        return true;
    struct stat source = {};
    const bool same_people = rules.rights == rights_t::of_source &&
                             fstat(rules.source, &source) == 0 && source.st_uid == status.st_uid &&
                             source.st_gid == status.st_gid && !has_access_list(rules.source);
    const mode_t mode = narrowed(same_people ? source.st_mode : 0600);
    return (mode == permissions(status) && !has_access_list(target.descriptor())) ||
           (fchmod(target.descriptor(), mode) == 0 && remove_access_list(target.descriptor()));
}

// A target that may be written but not read has no old contents to put back.
bool replace_file_t::keep_old_contents() {
    if (!S_ISREG(status.st_mode))
        return true;
    const file_t old = open_at(AT_FDCWD, target_path.c_str(), O_RDONLY);
    if (!old.is_open())
        return errno == EACCES;
    std::string contents;
    const bool complete = read_all(old.descriptor(), [&](std::string_view bytes) {
        contents += bytes;
        return true;
    });
    if (complete)
        old_contents = std::move(contents);
    return complete;
}

void replace_file_t::put_old_contents_back() const {
    const file_t again = open_at(AT_FDCWD, target_path.c_str(), O_WRONLY);
    const auto size = static_cast<off_t>(old_contents->size());
    if (write_all(again.descriptor(), *old_contents) && ftruncate(again.descriptor(), size) == 0)
        sync(again.descriptor());
}

bool replace_file_t::allow_first_byte() const {
    return !rules.before_first_byte || rules.before_first_byte();
}

bool replace_file_t::start_in_place() {
    touched = touched || (allow_first_byte() && narrow_target());
    return touched;
}

// False when there is no room; a file system that cannot reserve tells nothing about that.
bool replace_file_t::reserve(off_t size) {
    if (!start_in_place())
        return false;
    if (size <= status.st_size)
        return true;
    const auto call = [&] { return fallocate(target.descriptor(), FALLOC_FL_KEEP_SIZE, 0, size); };
    return uninterrupted(call) == 0 || (errno != ENOSPC && errno != EDQUOT && errno != EFBIG);
}

bool replace_file_t::write_in_place(std::string_view bytes) {
    const off_t end = written + static_cast<off_t>(bytes.size());
    if (!reserve(end) || !write_all(target.descriptor(), bytes))
        return false;
    written = end;
    return true;
}

bool replace_file_t::copy_in_place() {
    const file_t complete = open_at(directory.descriptor(), beside_name.c_str(), O_RDONLY);
    struct stat size;
    return complete.is_open() && fstat(complete.descriptor(), &size) == 0 && keep_old_contents() &&
           reserve(size.st_size) &&
           read_all(complete.descriptor(),
                    [&](std::string_view bytes) { return write_in_place(bytes); }) &&
           finish_in_place();
}

bool replace_file_t::finish_in_place() {
    const bool is_file = S_ISREG(status.st_mode);
    if (!start_in_place())
        return false;
    const auto cut = [&] { return ftruncate(target.descriptor(), written); };
    if (is_file && uninterrupted(cut) != 0)
        return false;
    if (!sync(target.descriptor()) && (is_file || (errno != EINVAL && errno != EROFS)))
        return false;
    if (!target.close())
        return false;
    touched = false;
    return true;
}

// The target has the new contents, and the name beside it the old ones.
bool replace_file_t::keep_if_expected() {
    const int in = directory.descriptor();
    const std::string old_name = std::exchange(beside_name, {}); // not to be removed unseen
    const file_t old = open_at(in, old_name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    const bool expected = old.is_open() && rules.is_expected(old.descriptor());
    if (expected || exchange_names(in, old_name.c_str(), target_name.c_str()))
        beside_name = old_name;
    give_up_beside();
    errno = ESTALE;
    return expected;
}

bool replace_file_t::rename_over_target() {
    const int in = directory.descriptor();
    const char *from = beside_name.c_str(), *to = target_name.c_str();
    if (target.is_open() && rules.is_expected && exchange_names(in, from, to))
        return keep_if_expected();
    if (target.is_open() ? renameat(in, from, in, to) != 0 : !rename_to_new(in, from, to))
        return false;
    beside_name.clear();
    return true;
}

bool replace_file_t::commit() {
    if (!beside.is_open())
        return finish_in_place();
    if (!take_over_attributes())
        return target.is_open() && rules.rights == rights_t::of_target && copy_in_place();
    if (!sync(beside.descriptor()) || !beside.close() || !allow_first_byte())
        return false;
    if (!rename_over_target())
        return target.is_open() && is_refused_rename(errno) && copy_in_place();
    return sync(directory.descriptor()) || errno == EINVAL || errno == EBADF;
}

} // namespace engine
