#include "base/outputs.h"

#include "base/errors.h"
#include "base/files.h"
#include "base/interruption.h"
#include "base/quoting.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;
using rights_t = engine::replace_rules_t::rights_t;

// The name behind all links, also of a file that is not there yet.
std::string full_name(const std::string &path) {
    std::error_code error;
    const fs::path full = fs::weakly_canonical(fs::absolute(path, error), error);
    return error ? path : full.string();
}

// True for a link that others may have put there: it is somebody else's, or stands where everybody
// may write.
bool is_foreign_link(const std::string &path) {
    struct stat link, folder;
    if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
        return false;
    const bool ours = link.st_uid == geteuid() || link.st_uid == 0;
    return !ours || stat(folder_of(path).c_str(), &folder) != 0 || (folder.st_mode & S_IWOTH) != 0;
}

// The file that a link leads to, so that no other link can take its place; the file itself where it
// is none. Empty for a link to what has no name, such as a pipe.
std::string behind_link(const std::string &path) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(path, error)))
        return path;
    return fs::canonical(path, error).string();
}

bool is_no_such_file(int error) {
    return error == ENOENT || error == ENOTDIR || error == EISDIR || error == ELOOP ||
           error == ENAMETOOLONG;
}

engine::file_t open_source(const std::string &source) {
    if (source == standard_stream)
        return engine::file_t(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    return source.empty() ? engine::file_t()
                          : engine::open_at(AT_FDCWD, source.c_str(), O_RDONLY | O_NONBLOCK);
}

// Only a file's rights say who may read what stood in it.
bool is_regular(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

bool may_wait_for_a_reader(const std::string &path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

// `writing` outlives `file`: the command ends when what is beside the target is removed.
void write_whole(const std::string &path, std::string_view bytes, engine::replace_rules_t rules) {
    const uninterrupted_t writing(!may_wait_for_a_reader(path));
    const auto last_look = std::move(rules.before_first_byte);
    rules.before_first_byte = [&last_look] {
        const bool allowed = !last_look || last_look();
        uninterrupted_t::last_call();
        return allowed;
    };
    engine::replace_file_t file(std::move(rules));
    if (file.begin(path.c_str()) && file.write(bytes) && file.commit())
        return;
    const int error = errno;
    if (error == ESTALE)
        throw run_error_t(quoted_name(path) + " was changed by somebody else; it stays so");
    const std::string message = "cannot write " + quoted_name(path) + ": " + strerror(error);
    if (is_no_such_file(error))
        throw usage_error_t(message);
    throw run_error_t(message);
}

void outputs_t::files_t::add(const std::string &path, const std::string &what) {
    struct stat status;
    by_name.emplace(full_name(path), what);
    if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
        by_identity.emplace(std::pair(status.st_dev, status.st_ino), what);
}

void outputs_t::files_t::add_open(int descriptor, const std::string &what) {
    struct stat status;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        by_identity.emplace(std::pair(status.st_dev, status.st_ino), what);
}

std::string outputs_t::files_t::find(const std::string &path) const {
    struct stat status;
    const auto named = by_name.find(full_name(path));
    if (named != by_name.end())
        return named->second;
    if (stat(path.c_str(), &status) != 0)
        return "";
    const auto same = by_identity.find({status.st_dev, status.st_ino});
    return same == by_identity.end() ? "" : same->second;
}

outputs_t::outputs_t() {
    inputs.add_open(STDOUT_FILENO, "where standard output goes");
    inputs.add_open(STDERR_FILENO, "where messages go");
}

void outputs_t::made_from(const std::string &file) {
    source = sources++ == 0 ? file : "";
    reads(file);
}

void outputs_t::only_reads(const std::string &file) {
    files_t shown;
    shown.add_open(STDOUT_FILENO, "shown");
    if (!shown.find(file == standard_stream ? "/dev/stdin" : file).empty())
        throw usage_error_t("standard output would go into " + quoted_name(file) +
                            ", which is read");
}

void outputs_t::reads(const std::string &file) {
    only_reads(file);
    if (file == standard_stream)
        inputs.add_open(STDIN_FILENO, "a file that is read");
    else
        inputs.add(file, "a file that is read");
}

std::string outputs_t::obstacle(const std::string &path) const {
    std::error_code ignored;
    if (std::string what = inputs.find(path); !what.empty())
        return what;
    if (fs::is_directory(path, ignored))
        return "a directory";
    return is_foreign_link(path) ? "a link that others may have put there" : "";
}

void outputs_t::expect(const std::string &option, const std::string &path) {
    if (path.empty())
        throw usage_error_t(option + " needs the name of a file");
    std::string what = obstacle(path);
    if (what.empty())
        what = outputs.find(path);
    if (!what.empty())
        throw usage_error_t(option + ": " + quoted_name(path) + " is " + what +
                            "; name another file");
    std::error_code ignored;
    if (!fs::is_directory(folder_of(path), ignored))
        throw usage_error_t(option + ": " + quoted_name(path) + ": there is no such folder");
    outputs.add(path, "what " + option + " names");
}

void outputs_t::make_folder(const std::string &path) const {
    std::error_code error;
    if (is_foreign_link(path))
        throw usage_error_t(quoted_name(path) + " is a link that others may have put there");
    fs::create_directories(path, error);
    if (error)
        throw usage_error_t("cannot make the folder " + quoted_name(path) + ": " + error.message());
}

void outputs_t::write(const std::string &path, std::string_view bytes) const {
    if (const std::string what = obstacle(path); !what.empty())
        throw usage_error_t("cannot write " + quoted_name(path) + ": it is " + what);
    const engine::file_t from = open_source(source);
    const bool has_source = from.is_open() && is_regular(from.descriptor());
    const std::string behind = behind_link(path);
    write_whole(behind.empty() ? path : behind, bytes,
                {.rights = has_source ? rights_t::of_source : rights_t::of_owner,
                 .source = from.descriptor(),
                 .follows_link = behind.empty()});
}

} // namespace infraconvert
