#include "window/plan_folder.h"

#include "base/digest.h"
#include "base/errors.h"
#include "base/files.h"
#include "base/outputs.h"
#include "base/quoting.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;

constexpr mode_t rights_of_others = S_IRWXG | S_IRWXO;

void sync_folder(const fs::path &folder) {
    const engine::file_t opened = engine::open_at(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (!opened.is_open() || !engine::sync(opened.descriptor()))
        throw run_error_t("cannot sync " + quoted_name(folder.string()) + ": " + strerror(errno));
}

// A folder outlasts a power cut once the one that it stands in is synced. False where it is there
// already.
bool make_synced_folder(const std::string &folder) {
    if (mkdir(folder.c_str(), S_IRWXU) != 0) {
        if (errno == EEXIST)
            return false;
        throw run_error_t("cannot make " + quoted_name(folder) + ": " + strerror(errno));
    }
    sync_folder(folder_of(folder));
    return true;
}

// The folder behind all links; a link in the place of the file itself stays, it is the file's name.
fs::path real_folder_of(const std::string &file) {
    std::error_code error;
    const fs::path real = fs::canonical(folder_of(file), error);
    return error ? fs::absolute(folder_of(file)) : real;
}

} // namespace

plan_folder_t::plan_folder_t(std::string plan)
    : plan_file(std::move(plan)), folder(plan_file + ".private") {}

void plan_folder_t::check_folder() const {
    struct stat status;
    const std::string name = quoted_name(folder);
    if (lstat(folder.c_str(), &status) != 0)
        throw input_error_t(
            name + ": " + strerror(errno) +
            "; without the key in it nothing can be done with the plan: put it back, "
            "or make the plan anew with infraconvert preview --save-plan");
    if (!S_ISDIR(status.st_mode))
        throw input_error_t(name + ": not a folder, which has to hold what is private of the plan");
    const bool ours = status.st_uid == geteuid() || geteuid() == 0;
    if (!ours || (status.st_mode & rights_of_others) != 0)
        throw input_error_t(name +
                            (ours ? ": others may get at it; take it for yourself (chmod 700), "
                                    "or make the plan anew under another name"
                                  : ": it is another user's, who alone can go on with the plan"));
}

bool plan_folder_t::make_folder() {
    const bool made = make_synced_folder(folder);
    check_folder();
    return made;
}

void plan_folder_t::make() {
    make_folder();
    if (!fs::exists(key_file()))
        write_whole(key_file(), random_key(),
                    {.rights = engine::replace_rules_t::rights_t::of_owner, .must_be_new = true});
    open();
}

void plan_folder_t::open() {
    check_folder();
    key = read_file(key_file());
    if (key.size() != random_key().size())
        throw input_error_t(quoted_name(key_file()) + ": not the key of a plan");
}

std::string plan_folder_t::digest(std::string_view bytes) const { return hmac_sha256(key, bytes); }

bool plan_folder_t::keeps_originals() const {
    std::error_code error;
    return fs::exists(originals(), error) && !fs::is_empty(originals(), error);
}

bool plan_folder_t::is_of_another_than_root() const {
    struct stat status;
    return geteuid() == 0 && lstat(folder.c_str(), &status) == 0 && status.st_uid != 0;
}

// Who made the plan, and has somebody with more rights apply it, can look at what was kept.
void plan_folder_t::make_originals() const {
    struct stat status;
    if (!make_synced_folder(originals()) || !is_of_another_than_root())
        return;
    const engine::file_t made =
        engine::open_at(AT_FDCWD, originals().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!made.is_open() || lstat(folder.c_str(), &status) != 0 ||
        fchown(made.descriptor(), status.st_uid, status.st_gid) != 0)
        throw run_error_t("cannot give " + quoted_name(originals()) +
                          " to its owner: " + strerror(errno));
}

bool plan_folder_t::keeps_original(const std::string &digest) const try {
    read_original(digest);
    return true;
} catch (const input_error_t &) {
    return false;
}

// Where configurations have the same bytes, another thread may keep them at this moment: they are
// its own then once the folder is synced.
void plan_folder_t::keep_original(const std::string &of_bytes, std::string_view bytes) const {
    if (keeps_original(of_bytes))
        return sync_folder(originals());
    using rights_t = engine::replace_rules_t::rights_t;
    const bool is_others = is_of_another_than_root();
    const engine::file_t model =
        is_others ? engine::open_at(AT_FDCWD, journal().c_str(), O_RDONLY | O_NOFOLLOW)
                  : engine::file_t();
    try {
        write_whole(original(of_bytes), bytes,
                    {.rights = is_others ? rights_t::of_source : rights_t::of_owner,
                     .source = model.descriptor()});
    } catch (const run_error_t &e) {
        if (!keeps_original(of_bytes)) {
            const std::string said = e.what(); // of a name that nobody knows
            throw run_error_t("its original finds no place in " + quoted_name(originals()) + ": " +
                              said.substr(said.rfind(": ") + 2));
        }
        sync_folder(originals());
    }
}

std::string plan_folder_t::read_original(const std::string &of_bytes) const {
    struct stat status;
    if (lstat(original(of_bytes).c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR))
        throw input_error_t("its original is not in " + quoted_name(originals()) + " any more");
    std::string bytes = read_file(original(of_bytes));
    if (digest(bytes) != of_bytes)
        throw input_error_t("its original in " + quoted_name(originals()) +
                            " is not what was kept");
    return bytes;
}

std::string plan_folder_t::name_in_plan(const std::string &file) const {
    const fs::path real = real_folder_of(file) / fs::path(file).filename();
    return real.lexically_relative(real_folder_of(plan_file));
}

std::string plan_folder_t::file(const std::string &name_in_plan) const {
    return fs::path(plan_file).parent_path() / name_in_plan;
}

} // namespace infraconvert
