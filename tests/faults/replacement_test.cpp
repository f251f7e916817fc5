// Every call of a replacement fails in turn, alone and together with a later one, and with every
// reason that may matter to it, for all the ways in which a file can be replaced. Afterwards the
// file is the old one or the new one, and nothing stands beside it.
//
// The calls are those of the engine's objects, which the linker leads through here.

#include "engine/replace_file.h"
#include "support/converter_process.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Not an error: a file that lstat is asked about seems to be on another device than it is, one that
// is locked has just been removed by somebody who took its writer for dead, and one that is written
// takes nothing.
constexpr int no_error = 0;

struct fault_t {
    int number; // of the call; -1: none
    int error;
};

// What happens to the calls between arm() and disarm().
struct script_t {
    fault_t first = {-1, 0}, second = {-1, 0};
    bool armed = false;
    std::vector<std::string> calls = {}; // by number
    std::set<std::string> failed = {};

    bool fails(const char *call) {
        if (!armed)
            return false;
        const int number = static_cast<int>(calls.size());
        calls.emplace_back(call);
        if (number != first.number && number != second.number)
            return false;
        failed.insert(call);
        errno = number == first.number ? first.error : second.error;
        return true;
    }
};
script_t script;

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
#define CAN_FAIL(result, name, parameters, arguments)                                              \
    extern "C" result __real_##name parameters;                                                    \
    extern "C" result __wrap_##name parameters;                                                    \
    result __wrap_##name parameters {                                                              \
        return script.fails(#name) ? static_cast<result>(-1) : __real_##name arguments;            \
    }

CAN_FAIL(int, openat, (int in, const char *name, int flags, mode_t mode), (in, name, flags, mode))
CAN_FAIL(int, fcntl, (int file, int command, int argument), (file, command, argument))
CAN_FAIL(int, ioctl, (int file, unsigned long request, void *argument), (file, request, argument))
CAN_FAIL(int, unlinkat, (int in, const char *name, int flags), (in, name, flags))
CAN_FAIL(int, linkat, (int in, const char *name, int to, const char *other, int flags),
         (in, name, to, other, flags))
CAN_FAIL(int, renameat, (int in, const char *name, int to, const char *other),
         (in, name, to, other))
CAN_FAIL(int, renameat2, (int in, const char *name, int to, const char *other, unsigned flags),
         (in, name, to, other, flags))
CAN_FAIL(int, fchown, (int file, uid_t user, gid_t group), (file, user, group))
CAN_FAIL(int, fchmod, (int file, mode_t mode), (file, mode))
CAN_FAIL(int, futimens, (int file, const timespec *times), (file, times))
CAN_FAIL(int, fremovexattr, (int file, const char *name), (file, name))
CAN_FAIL(int, fsetxattr, (int file, const char *name, const void *value, size_t size, int flags),
         (file, name, value, size, flags))
CAN_FAIL(ssize_t, fgetxattr, (int file, const char *name, void *value, size_t size),
         (file, name, value, size))
CAN_FAIL(ssize_t, flistxattr, (int file, char *names, size_t size), (file, names, size))
CAN_FAIL(int, fallocate, (int file, int mode, off_t from, off_t size), (file, mode, from, size))
CAN_FAIL(int, ftruncate, (int file, off_t size), (file, size))
CAN_FAIL(ssize_t, read, (int file, void *bytes, size_t size), (file, bytes, size))
CAN_FAIL(ssize_t, getrandom, (void *bytes, size_t size, unsigned flags), (bytes, size, flags))

// These answer something else than a number, or do their work all the same.
extern "C" {
int __real_close(int file);
int __real_flock(int file, int what);
int __real_fstat(int file, struct stat *status);
int __real_lstat(const char *name, struct stat *status);
char *__real_realpath(const char *name, char *resolved);
DIR *__real_fdopendir(int file);
ssize_t __real_write(int file, const void *bytes, size_t size);

int __wrap_close(int file) {
    const bool fails = script.fails("close");
    const int error = errno, closed = __real_close(file);
    errno = error;
    return fails ? -1 : closed;
}
int __wrap_flock(int file, int what) {
    const bool fails = script.fails("flock");
    if (fails && errno != no_error)
        return -1;
    if (fails)
        fs::remove(fs::read_symlink("/proc/self/fd/" + std::to_string(file)));
    return __real_flock(file, what);
}
int __wrap_fsync(int) { return script.fails("fsync") ? -1 : 0; } // takes long, and tells nothing
int __wrap_fstat(int file, struct stat *status) {
    return script.fails("fstat") ? -1 : __real_fstat(file, status);
}
int __wrap_lstat(const char *name, struct stat *status) {
    const bool fails = script.fails("lstat");
    if (fails && errno != no_error)
        return -1;
    const int found = __real_lstat(name, status);
    status->st_dev += fails ? 1 : 0;
    return found;
}
char *__wrap_realpath(const char *name, char *resolved) {
    return script.fails("realpath") ? nullptr : __real_realpath(name, resolved);
}
DIR *__wrap_fdopendir(int file) {
    return script.fails("fdopendir") ? nullptr : __real_fdopendir(file);
}
ssize_t __wrap_write(int file, const void *bytes, size_t size) {
    if (!script.fails("write"))
        return __real_write(file, bytes, size);
    return errno == no_error ? 0 : -1;
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using engine::replace_rules_t;
using rights_t = replace_rules_t::rights_t;

constexpr const char *old_text = "old text", *new_text = "new contents";
constexpr mode_t target_mode = 0644, source_mode = 0640;
constexpr time_t source_time = 1000; // of its last change

enum class target_t { file, second_link, absent, dangling_link, device };

struct way_t {
    const char *name;
    target_t target;
    rights_t rights = rights_t::of_target;
    bool keeps_times = false;
    enum { not_asked, yes, no } expected = not_asked;
    // What is unlike a file of one's own; where it cannot be made the way is one of the others.
    enum trait_t { none, other_user, other_group, source_listed, target_listed, same_mode };
    trait_t trait = none;
};

// Without it the name of a test holds the bytes of its way, and with them addresses.
void PrintTo(const way_t &way, std::ostream *out) { *out << way.name; }

const way_t ways[] = {
    {"replaced", target_t::file},
    {"in place", target_t::second_link},
    {"made", target_t::absent},
    {"not made behind a link", target_t::dangling_link},
    {"written to", target_t::device},
    {"replaced with the rights of another", target_t::file, rights_t::of_source, true},
    {"in place with the rights of another", target_t::second_link, rights_t::of_source},
    {"made with the rights of another", target_t::absent, rights_t::of_source, true},
    {"written to with the rights of another", target_t::device, rights_t::of_source},
    {"replaced for its owner", target_t::file, rights_t::of_owner},
    {"in place for its owner", target_t::second_link, rights_t::of_owner},
    {"made for its owner", target_t::absent, rights_t::of_owner},
    {"in place with the rights of somebody else", target_t::second_link, rights_t::of_source, false,
     way_t::not_asked, way_t::other_user},
    {"in place with the rights of another group", target_t::second_link, rights_t::of_source, false,
     way_t::not_asked, way_t::other_group},
    {"in place with a list of rights", target_t::second_link, rights_t::of_source, false,
     way_t::not_asked, way_t::source_listed},
    {"in place of a list of rights", target_t::second_link, rights_t::of_source, false,
     way_t::not_asked, way_t::target_listed},
    {"in place with the same rights", target_t::second_link, rights_t::of_source, false,
     way_t::not_asked, way_t::same_mode},
    {"replaced as expected", target_t::file, rights_t::of_target, false, way_t::yes},
    {"not as expected", target_t::file, rights_t::of_target, false, way_t::no},
};

// Lets the user 4321 read.
void add_access_list(const std::string &file) {
    constexpr unsigned char list[] =
        "\2\0\0\0\1\0\6\0\xff\xff\xff\xff\2\0\4\0\xe1\x10\0\0\4\0\0\0\xff\xff\xff\xff"
        "\x10\0\4\0\xff\xff\xff\xff\x20\0\0\0\xff\xff\xff\xff";
    setxattr(file.c_str(), "system.posix_acl_access", list, sizeof list - 1, 0);
}

// A place in which a file is replaced in one of the ways.
class replacement_t {
  public:
    explicit replacement_t(const way_t &chosen) : way(chosen) {}

    // What a writer who is dead left behind stands beside the file.
    void prepare() {
        fs::remove_all(folder());
        const std::string source = folder() + "/source";
        support::write_file(source, "source");
        chmod(source.c_str(), way.trait == way_t::same_mode ? target_mode : source_mode);
        setxattr(source.c_str(), "user.comment", "a", 1, 0);
        if (way.trait == way_t::source_listed)
            add_access_list(source);
        const timespec times[] = {{source_time, 0}, {source_time, 0}};
        utimensat(AT_FDCWD, source.c_str(), times, 0);
        const bool given = chown(source.c_str(), way.trait == way_t::other_user ? 1234 : geteuid(),
                                 way.trait == way_t::other_group ? 1234 : getegid()) == 0;
        EXPECT_TRUE(given || geteuid() != 0);
        support::write_file(folder() + "/.a.cfg.infraconvert-0123456789abcdef", "left behind");
        if (way.target == target_t::dangling_link)
            fs::create_symlink("none", file());
        if (way.target == target_t::file || way.target == target_t::second_link)
            prepare_target();
        mode_before = way.target == target_t::absent ? 0666 : mode();
    }

    void prepare_target() const {
        support::write_file(file(), old_text);
        chmod(file().c_str(), target_mode);
        setxattr(file().c_str(), "user.comment", "b", 1, 0);
        if (way.target == target_t::second_link)
            fs::create_hard_link(file(), folder() + "/second");
        if (way.trait == way_t::target_listed)
            add_access_list(file());
    }

    // Returns true when the replacement says that it is done.
    bool run(fault_t first, fault_t second) const {
        const engine::file_t source(open((folder() + "/source").c_str(), O_RDONLY));
        replace_rules_t rules = {
            .rights = way.rights, .source = source.descriptor(), .keeps_times = way.keeps_times};
        if (way.expected != way_t::not_asked)
            rules.is_expected = [this](int) { return way.expected == way_t::yes; };
        script = {.first = first, .second = second, .armed = true};
        bool done = false;
        {
            engine::replace_file_t replacement(rules);
            done = replacement.begin(file().c_str()) && replacement.write("new ") &&
                   replacement.write("contents") && replacement.commit();
        }
        script.armed = false;
        return done;
    }

    std::string contents() const { return support::read_file(file()); }
    std::string contents_before() const {
        const bool was_there = way.target == target_t::file || way.target == target_t::second_link;
        return was_there ? old_text : "";
    }
    mode_t mode() const {
        struct stat status = {};
        return stat(file().c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
    }
    time_t last_change() const {
        struct stat status = {};
        stat(file().c_str(), &status);
        return status.st_mtim.tv_sec;
    }
    // No more people than before, nor than the source allows once its text may be there.
    mode_t widest_mode() const {
        const mode_t allowed = way.rights == rights_t::of_target  ? 0777
                               : way.rights == rights_t::of_owner ? 0600
                               : script.failed.contains("fchown") ? 0600
                               : way.trait == way_t::same_mode    ? target_mode
                                                                  : source_mode;
        return contents() == new_text ? mode_before & allowed : mode_before;
    }
    // The texts of what stands beside the file.
    std::set<std::string> beside() const {
        std::set<std::string> texts;
        for (const auto &entry : fs::directory_iterator(folder())) {
            if (entry.path().filename().string().starts_with(".a.cfg.infraconvert-"))
                texts.insert(support::read_file(entry.path()));
        }
        return texts;
    }

  private:
    std::string folder() const { return place.path() + "/folder"; }
    std::string file() const {
        return way.target == target_t::device ? "/dev/null" : folder() + "/a.cfg";
    }

    const way_t &way;
    const support::temporary_directory_t place;
    mode_t mode_before = 0;
};

bool failed(std::initializer_list<const char *> calls) {
    return std::any_of(calls.begin(), calls.end(),
                       [](const char *call) { return script.failed.contains(call); });
}

bool last_sync_failed() {
    const auto last = std::find(script.calls.rbegin(), script.calls.rend(), "fsync");
    const auto number = script.calls.rend() - last - 1;
    return number >= 0 && (number == script.first.number || number == script.second.number);
}

// The directory is synced last; what could not be exchanged back has the file's name; a file system
// that cannot rename to a new name gives it a second one first.
bool may_be_new_all_the_same(const way_t &way) {
    switch (way.target) {
    case target_t::file:
        return last_sync_failed() ||
               (way.expected != way_t::not_asked && failed({"renameat2", "openat"}));
    case target_t::absent:
        return last_sync_failed() || failed({"unlinkat"});
    default:
        return false;
    }
}

void check_contents(const way_t &way, const replacement_t &replacement, bool done) {
    const std::string contents = replacement.contents();
    const bool is_new = contents == new_text, is_old = contents == replacement.contents_before();
    const bool may_be_torn = script.second.number >= 0 && way.target == target_t::second_link;
    const bool is_right = done ? is_new : is_old || (is_new && may_be_new_all_the_same(way));
    EXPECT_TRUE(is_right || (!done && may_be_torn)) << done << ' ' << contents;
    EXPECT_EQ(replacement.mode() & ~replacement.widest_mode(), 0u) << replacement.mode();
}

// What the dead left is removed by those who look for it, and who can.
void check_beside(const way_t &way, const replacement_t &replacement, bool done) {
    const bool may_not_be_seen =
        failed({"openat", "fstat", "flock", "fdopendir", "fcntl"}) || failed({"realpath", "lstat"});
    std::set<std::string> beside = replacement.beside();
    if (!done || may_not_be_seen || way.target == target_t::second_link)
        beside.erase("left behind");
    if (failed({"unlinkat", "renameat2"}))
        return;
    EXPECT_EQ(beside, std::set<std::string>());
}

constexpr int reasons[] = {EIO,    EINTR,   EINVAL,       EACCES,      EPERM,   ENOSPC, EDQUOT,
                           EFBIG,  ENOTSUP, ENODATA,      EXDEV,       EBUSY,   EROFS,  EBADF,
                           ENOENT, EEXIST,  ENAMETOOLONG, EWOULDBLOCK, no_error};

bool is_one_of(int reason, std::initializer_list<int> reasons_given) {
    return std::ranges::find(reasons_given, reason) != reasons_given.end();
}

// Where there is another way than the call that failed, or nothing depends on it.
bool is_got_over(const way_t &way, std::string_view call, int reason) {
    static const std::set<std::string_view> carried_on = {
        "openat", "write", "read", "fsync", "flock", "fallocate", "ftruncate", "close"};
    if (reason == EINTR && carried_on.contains(call))
        return true;
    if (call == "renameat2")
        return way.target == target_t::file || reason == EINVAL;
    if (call == "renameat")
        return is_one_of(reason, {EBUSY, EXDEV, EPERM, EACCES});
    if (call == "fallocate")
        return !is_one_of(reason, {ENOSPC, EDQUOT, EFBIG});
    return call == "fchown" || call == "flock" || call == "getrandom" || call == "fdopendir";
}

// What was put back must outlast a power cut like what is new.
bool was_synced_after(int number) {
    return std::find(script.calls.begin() + number, script.calls.end(), "fsync") !=
           script.calls.end();
}

void check_done(const way_t &way, const replacement_t &replacement, const std::string &call,
                fault_t first, bool done) {
    const bool can_be_done = way.target != target_t::dangling_link && way.expected != way_t::no;
    if (first.number < 0 || (can_be_done && is_got_over(way, call, first.error))) {
        EXPECT_EQ(done, can_be_done);
    }
    EXPECT_TRUE(way.target != target_t::second_link || call != "write" ||
                was_synced_after(first.number));
    EXPECT_FALSE(done && call == "write" && first.error == no_error);
    EXPECT_TRUE(first.number >= 0 || !way.keeps_times || replacement.last_change() == source_time);
}

class replacement_test : public testing::TestWithParam<way_t> {};

TEST_P(replacement_test, leaves_the_old_file_or_the_new_one) {
    const way_t &way = GetParam();
    replacement_t replacement(way);
    int faults = 0;
    const auto try_out = [&](fault_t first, fault_t second) {
        replacement.prepare();
        const bool done = replacement.run(first, second);
        const std::string call =
            first.number < 0 ? "none"
                             : script.calls[std::min<size_t>(static_cast<size_t>(first.number),
                                                             script.calls.size() - 1)];
        SCOPED_TRACE(std::string(way.name) + ": " + call + ", " + strerror(first.error) +
                     ", second fault at " + std::to_string(second.number));
        if (way.target != target_t::device) {
            check_contents(way, replacement, done);
            check_beside(way, replacement, done);
        }
        if (second.number < 0)
            check_done(way, replacement, call, first, done);
        faults += static_cast<int>(script.failed.size());
    };
    try_out({-1, 0}, {-1, 0});
    const int calls = static_cast<int>(script.calls.size());
    for (int number = 0; number < calls; number++) {
        for (const int reason : reasons)
            try_out({number, reason}, {-1, 0});
        for (const int reason : {EIO, EINVAL}) {
            try_out({number, reason}, {-1, 0});
            const int calls_then = static_cast<int>(script.calls.size());
            for (int later = number + 1; later < calls_then; later++)
                try_out({number, reason}, {later, ENOSPC});
        }
    }
    EXPECT_GT(faults, calls);
}

INSTANTIATE_TEST_SUITE_P(ways, replacement_test, testing::ValuesIn(ways), [](const auto &each) {
    std::string name = each.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

} // namespace
