// What a conversion keeps of the file: owner, mode, access list, extended attributes, links; and
// how it writes where the file cannot be replaced.

#include "support/services.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

const char *const line = "npiv enable\n";
const char *const old_text = "hostname a\nnpiv enable\n";
const char *const new_text = "hostname a\nfeature npiv\n";
constexpr uid_t nobody = 65534;

// One place with a configuration to be converted.
class place_t {
  public:
    place_t() {
        support::write_file(file, old_text);
        fs::permissions(place.path(), fs::perms(0777));
        fs::permissions(directory, fs::perms(0777));
    }

    // Converts in a process of its own, which `prepare` may change first; it returns false to give
    // up. `check` sees the result from inside that process. Returns the status, or one of these.
    static constexpr int gave_up = 99, check_failed = 98;
    using step_t = std::function<bool()>;
    int convert(
        const step_t &prepare = [] { return true; },
        const step_t &check = [] { return true; }) const {
        const auto start = support::service_named("npiv").start;
        const auto outcome = support::run_in_process([&] {
            if (!prepare())
                return gave_up;
            const syserr_t result = start(place.path().c_str(), "package", "4.1(3)K2(1)", "4.1(2)");
            return check() ? static_cast<int>(result) : check_failed;
        });
        return static_cast<signed char>(outcome.status);
    }

    struct stat status() const {
        struct stat result = {};
        stat(file.c_str(), &result);
        return result;
    }

    const support::temporary_directory_t place;
    const std::string directory = place.path() + "/ascii";
    const std::string file = directory + "/system.cfg";
};

std::string attribute(const std::string &path, const char *name) {
    char value[256];
    const ssize_t size = getxattr(path.c_str(), name, value, sizeof value);
    return size < 0 ? strerror(errno) : std::string(value, static_cast<size_t>(size));
}

// An access list that also lets the user `user` read, as the kernel stores it.
std::string access_list(uint32_t user) {
    struct [[gnu::packed]] entry_t {
        uint16_t tag, permissions;
        uint32_t id;
    };
    constexpr uint32_t version = 2, nobody_named = UINT32_MAX;
    enum : uint16_t { owner = 1, named_user = 2, group = 4, mask = 16, others = 32 };
    const entry_t entries[] = {{owner, 6, nobody_named},
                               {named_user, 4, user},
                               {group, 4, nobody_named},
                               {mask, 4, nobody_named},
                               {others, 0, nobody_named}};
    std::string list(reinterpret_cast<const char *>(&version), sizeof version);
    return list.append(reinterpret_cast<const char *>(entries), sizeof entries);
}

bool set_attribute(const std::string &path, const char *name, const std::string &value) {
    return setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

// Gives up the rights of root, if there are any.
bool become_nobody() {
    return geteuid() != 0 ||
           (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0);
}

// Mounts that are made from now on are seen by this process only.
bool enter_own_mounts() {
    return unshare(geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

TEST(metadata, is_kept_by_a_replaced_file) {
    place_t p;
    if (!set_attribute(p.file, "user.comment", "kept") ||
        !set_attribute(p.file, "user.empty", "") ||
        !set_attribute(p.file, "system.posix_acl_access", access_list(4321)))
        GTEST_SKIP() << "no extended attributes here: " << strerror(errno);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(p.file.c_str(), 1234, 4321), 0);
    }
    const struct stat before = p.status();
    EXPECT_EQ(p.convert(), 0);
    const struct stat after = p.status();
    EXPECT_EQ(support::read_file(p.file), new_text);
    EXPECT_NE(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(attribute(p.file, "user.comment"), "kept");
    EXPECT_EQ(attribute(p.file, "user.empty"), "");
    EXPECT_EQ(attribute(p.file, "system.posix_acl_access"), access_list(4321));
}

TEST(metadata, each_mode_is_kept) {
    for (const mode_t mode : {0600, 0640, 0664, 0777, 0604, 04755, 02750, 01644}) {
        place_t p;
        ASSERT_EQ(chmod(p.file.c_str(), mode), 0);
        umask(0077);
        EXPECT_EQ(p.convert(), 0);
        EXPECT_EQ(p.status().st_mode & 07777, mode);
    }
}

TEST(metadata, nothing_is_inherited_from_the_directory) {
    place_t p;
    if (!set_attribute(p.directory, "system.posix_acl_default", access_list(4321)))
        GTEST_SKIP() << "no access lists here: " << strerror(errno);
    ASSERT_EQ(chmod(p.file.c_str(), 0640), 0);
    EXPECT_EQ(p.convert(), 0);
    EXPECT_EQ(support::read_file(p.file), new_text);
    EXPECT_EQ(attribute(p.file, "system.posix_acl_access"), strerror(ENODATA));
    EXPECT_EQ(p.status().st_mode & 07777, 0640u);
}

// Sets a flag that chattr knows; false where the file system has none, or the user may not.
bool set_flag(const std::string &path, unsigned int flag, bool on) {
    const int file = open(path.c_str(), O_RDONLY);
    unsigned int flags = 0;
    bool done = ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
    flags = on ? flags | flag : flags & ~flag;
    done = done && ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    close(file);
    return done;
}

TEST(metadata, flags_are_kept_and_those_that_forbid_writing_are_heeded) {
    place_t p;
    constexpr unsigned int kept = FS_NODUMP_FL | FS_NOATIME_FL;
    if (!set_flag(p.file, kept, true))
        GTEST_SKIP() << "no flags here: " << strerror(errno);
    EXPECT_EQ(p.convert(), 0);
    EXPECT_EQ(support::read_file(p.file), new_text);
    unsigned int flags = 0;
    const int file = open(p.file.c_str(), O_RDONLY);
    EXPECT_EQ(ioctl(file, FS_IOC_GETFLAGS, &flags), 0);
    EXPECT_EQ(flags & kept, kept);
    close(file);
    for (const unsigned int forbids : {FS_IMMUTABLE_FL, FS_APPEND_FL}) {
        support::write_file(p.file, old_text);
        if (!set_flag(p.file, forbids, true))
            GTEST_SKIP() << "no rights for this flag: " << strerror(errno);
        const int status = p.convert();
        set_flag(p.file, forbids, false);
        EXPECT_EQ(status, -1);
        EXPECT_EQ(support::read_file(p.file), old_text);
    }
}

TEST(metadata, a_symbolic_link_stays_and_its_target_is_replaced) {
    place_t p;
    fs::create_directory(p.place.path() + "/elsewhere");
    fs::rename(p.file, p.place.path() + "/elsewhere/real.cfg");
    fs::create_symlink("../elsewhere/real.cfg", p.file);
    EXPECT_EQ(p.convert(), 0);
    EXPECT_EQ(fs::read_symlink(p.file), "../elsewhere/real.cfg");
    EXPECT_EQ(support::read_file(p.place.path() + "/elsewhere/real.cfg"), new_text);
}

// The first limit is met by a short text, the second by a long one that is written by itself.
TEST(metadata, a_file_that_may_not_become_so_large) {
    for (const rlim_t limit : {5, 100'000}) {
        place_t p;
        const std::string text = line + std::string(200'000, '\n');
        support::write_file(p.file, text);
        const auto limit_files = [&] {
            signal(SIGXFSZ, SIG_IGN);
            rlimit files = {};
            getrlimit(RLIMIT_FSIZE, &files);
            files.rlim_cur = limit;
            return setrlimit(RLIMIT_FSIZE, &files) == 0;
        };
        EXPECT_EQ(p.convert(limit_files), -1);
        EXPECT_EQ(support::read_file(p.file), text);
        EXPECT_EQ(std::distance(fs::directory_iterator(p.directory), {}), 1);
    }
}

TEST(in_place, both_names_of_a_file_show_the_new_text) {
    place_t p;
    const std::string second = p.place.path() + "/second";
    fs::create_hard_link(p.file, second);
    EXPECT_EQ(p.convert(), 0);
    EXPECT_TRUE(fs::equivalent(p.file, second));
    EXPECT_EQ(support::read_file(second), new_text);
}

// A link of the process file system goes on showing a file that has lost the name it was opened by;
// the name that it then tells may be that of another file.
TEST(in_place, a_link_to_a_file_whose_name_is_gone) {
    for (const bool another_has_the_name : {false, true}) {
        place_t p;
        const std::string opened = p.place.path() + "/opened", kept = p.place.path() + "/kept";
        fs::rename(p.file, opened);
        fs::create_hard_link(opened, kept);
        const int descriptor = open(opened.c_str(), O_RDONLY);
        fs::remove(opened);
        const std::string told = opened + " (deleted)";
        if (another_has_the_name)
            support::write_file(told, "of somebody else");
        fs::create_symlink("/proc/self/fd/" + std::to_string(descriptor), p.file);
        EXPECT_EQ(p.convert(), 0);
        EXPECT_EQ(support::read_file(kept), new_text);
        EXPECT_EQ(fs::exists(told), another_has_the_name);
        EXPECT_TRUE(!another_has_the_name || support::read_file(told) == "of somebody else");
        close(descriptor);
    }
}

TEST(in_place, a_directory_that_takes_no_file) {
    for (const mode_t mode : {0555, 0111}) {
        place_t p;
        if (geteuid() == 0) {
            ASSERT_EQ(chown(p.file.c_str(), nobody, nobody), 0);
        }
        ASSERT_EQ(chmod(p.directory.c_str(), mode), 0);
        const struct stat before = p.status();
        EXPECT_EQ(p.convert(become_nobody), 0);
        EXPECT_EQ(p.status().st_ino, before.st_ino);
        EXPECT_EQ(support::read_file(p.file), new_text);
        ASSERT_EQ(chmod(p.directory.c_str(), 0777), 0);
    }
}

TEST(in_place, an_owner_that_cannot_be_given_on) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make a file of another owner";
    place_t p;
    ASSERT_EQ(chmod(p.file.c_str(), 0666), 0);
    EXPECT_EQ(p.convert(become_nobody), 0);
    EXPECT_EQ(p.status().st_uid, 0u);
    EXPECT_EQ(support::read_file(p.file), new_text);
    EXPECT_EQ(std::distance(fs::directory_iterator(p.directory), {}), 1);
}

TEST(in_place, a_file_that_is_a_mount_point) {
    place_t p;
    const std::string real = p.place.path() + "/real.cfg";
    support::write_file(real, old_text);
    support::write_file(p.file, "hidden by the mount");
    const int status = p.convert([&] {
        return enter_own_mounts() &&
               mount(real.c_str(), p.file.c_str(), nullptr, MS_BIND, nullptr) == 0;
    });
    if (status == place_t::gave_up)
        GTEST_SKIP() << "no mounts may be made here";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(support::read_file(real), new_text);
    EXPECT_EQ(support::read_file(p.file), "hidden by the mount");
    EXPECT_EQ(std::distance(fs::directory_iterator(p.directory), {}), 1);
}

TEST(in_place, a_full_disk_leaves_the_old_text) {
    // One page of text that grows beyond it, and no page left.
    constexpr size_t page = 4096;
    std::string text(page % strlen(line), '\n');
    while (text.size() < page)
        text += line;
    place_t p;
    const int status = p.convert(
        [&] {
            if (!enter_own_mounts() ||
                mount("none", p.directory.c_str(), "tmpfs", 0, "size=12k") != 0)
                return false;
            support::write_file(p.file, text);
            fs::create_hard_link(p.file, p.directory + "/second");
            support::write_file(p.directory + "/filler", std::string(2 * page, 'x'));
            return true;
        },
        [&] { return support::read_file(p.file) == text; });
    if (status == place_t::gave_up)
        GTEST_SKIP() << "no mounts may be made here";
    EXPECT_EQ(status, -1);
}
