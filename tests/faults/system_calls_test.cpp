// Every system call of a conversion fails in turn, and the process is killed before every one of
// them: the configuration is the old one or the new one, whole, and the status and the log tell
// which.

#include "support/services.h"
#include "traced_call.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

namespace fs = std::filesystem;
using faults::system_call_t;
using faults::verdict_t;

struct example_t {
    const char *service, *from, *to, *configuration;
    bool has_second_link; // so that the file is written in place
};

const char *const vlans = "hostname a\nvlan 1-3\n  fcoe\n  name storage\ninterface e1\n";
const example_t examples[] = {
    {"npiv", "4.1(2)", "4.1(3)K2(1)", "hostname a\nnpiv enable\ninterface e1\n", false},
    {"npiv", "4.1(2)", "4.1(3)K2(1)", "hostname a\nnpiv enable\ninterface e1\n", true},
    {"assoc", "4.1(3)", "5.0(2)", vlans, false},
    {"assoc", "4.1(3)", "5.0(2)", vlans, true},
};

const char *const configuration_file = "system.cfg";

bool is_beside(const std::string &file) { return file.starts_with(".system.cfg.infraconvert-"); }

// The first call of a save.
bool opens_target(const system_call_t &call) {
    return call.writes && call.file == configuration_file;
}

// A place where one example is converted again and again.
class conversion_t {
  public:
    explicit conversion_t(const example_t &e)
        : example(e), service(support::service_named(e.service)) {
        fs::create_directory(place.path() + "/logs");
        support::lead_logs_to(place.path() + "/logs");
        run([](const system_call_t &) { return verdict_t{}; });
        converted = file();
    }

    void run(const std::function<verdict_t(const system_call_t &)> &judge) {
        fs::remove_all(place.path() + "/ascii");
        support::write_file(path(), example.configuration);
        fs::permissions(path(), fs::perms(0640));
        has_attribute = setxattr(path().c_str(), "user.comment", "kept", 4, 0) == 0;
        if (example.has_second_link)
            fs::create_hard_link(path(), place.path() + "/ascii/second");
        const ino_t inode_before = inode();
        run_again(judge);
        same_inode = inode() == inode_before;
        fs::remove(place.path() + "/ascii/second");
    }
    // With what the last run left.
    void run_again(const std::function<verdict_t(const system_call_t &)> &judge =
                       [](const system_call_t &) { return verdict_t{}; }) {
        result = faults::traced(
            [this] {
                return static_cast<int>(
                    service.start(place.path().c_str(), "package", example.to, example.from));
            },
            judge);
    }

    std::string path() const { return place.path() + "/ascii/" + configuration_file; }
    std::string file() const { return support::read_file(path()); }
    bool is_old() const { return file() == example.configuration; }
    bool is_new() const { return file() == converted && !is_old(); }
    bool is_log(const std::string &name) const { return name == service.log; }
    std::string last_message() const {
        const std::string log = support::read_file(place.path() + "/logs/" + service.log);
        const size_t end = log.empty() ? 0 : log.size() - 1;
        const size_t before = log.rfind('\n', end - 1);
        return log.substr(before + 1, end - before - 1);
    }
    bool keeps_attributes() const {
        char value[8] = "";
        getxattr(path().c_str(), "user.comment", value, sizeof value);
        return fs::status(path()).permissions() == fs::perms(0640) &&
               (!has_attribute || value == std::string("kept"));
    }
    // What stands beside the file.
    std::set<std::string> beside() const {
        std::set<std::string> names;
        for (const auto &entry : fs::directory_iterator(place.path() + "/ascii"))
            names.insert(entry.path().filename());
        names.erase(configuration_file);
        return names;
    }

    faults::traced_t result;
    bool same_inode = false;

  private:
    ino_t inode() const {
        struct stat status = {};
        stat(path().c_str(), &status);
        return status.st_ino;
    }

    const support::temporary_directory_t place;
    const example_t &example;
    const support::service_t &service;
    std::string converted;
    bool has_attribute = true;
};

// What each kind of call is made to answer.
const std::map<std::string, std::vector<int>> errors = {
    {"open", {EACCES, EMFILE}},
    {"stat", {EIO}},
    {"read", {EIO}},
    {"write", {EIO, ENOSPC}},
    {"fsync", {EIO}},
    {"close", {EIO}},
    {"chown", {EPERM}},
    {"chmod", {EPERM}},
    {"xattr", {EIO}},
    {"rename", {EIO, EBUSY, EXDEV}},
    {"readlink", {EIO}},
    {"allocate", {ENOSPC}},
    {"truncate", {EIO}},
    {"lock", {ENOLCK, EWOULDBLOCK}},
    {"flags", {EIO, EOPNOTSUPP}},
    {"duplicate", {EMFILE}},
};

// The message after a failure that only the one call caused.
struct message_t {
    bool saving;
    const char *kind, *text;
};
const message_t messages[] = {
    {false, "stat", "failed to get file size for "},
    {false, "open", "failed to open "},
    {false, "read", "failed to read "},
    {false, "close", "failed to close "},
    {true, "open", "failed to open "},
    {true, "stat", "failed to open "},
    {true, "readlink", "failed to open "},
    {true, "read", "failed to open "},
    {true, "write", "failed to write byteto "},
    {true, "allocate", "failed to write byteto "},
    {true, "fsync", "failed to close "},
    {true, "close", "failed to close "},
    {true, "rename", "failed to close "},
    {true, "truncate", "failed to close "},
};

// Lets the call with the number `index`, of those that errors knows, fail.
class fault_t {
  public:
    fault_t(int at, size_t which_error, bool stays)
        : index(at), choice(which_error), lasting(stays) {}

    verdict_t operator()(const system_call_t &call, const conversion_t &conversion) {
        const auto kind = errors.find(call.kind);
        if (kind == errors.end())
            return {};
        is_saving = is_saving || opens_target(call);
        const bool first = count++ == index;
        const bool later = happened && lasting && !conversion.is_log(call.file);
        if (!first && !later)
            return {};
        if (first) {
            const size_t choices = kind->second.size();
            has_next_error = choice + 1 < choices;
            happened = true;
            failed = call;
            error = kind->second[choice];
            saving = is_saving;
        }
        return {verdict_t::fail, first ? error : kind->second[0]};
    }

    bool happened = false, has_next_error = false;
    system_call_t failed; // the first that failed
    int error = 0;
    bool saving = false; // it was part of the save

  private:
    const int index;
    const size_t choice;
    const bool lasting;
    bool is_saving = false;
    int count = 0;
};

// Calls `check` after a conversion for every call and every error that it can answer.
void for_each_fault(conversion_t &conversion, bool lasting,
                    const std::function<void(const fault_t &)> &check) {
    for (int index = 0;; index++) {
        for (size_t choice = 0;; choice++) {
            fault_t fault(index, choice, lasting);
            conversion.run([&](const system_call_t &call) { return fault(call, conversion); });
            if (!fault.happened)
                return;
            SCOPED_TRACE(fault.failed.kind + ' ' + fault.failed.file + ": " +
                         strerror(fault.error) + ", the call with number " + std::to_string(index));
            check(fault);
            if (!fault.has_next_error)
                break;
        }
    }
}

class counts_t {
  public:
    void add(const std::string &kind) { counts[kind]++; }
    int of(const std::string &kind) const {
        const auto found = counts.find(kind);
        return found == counts.end() ? 0 : found->second;
    }
    void print(const char *what) const {
        int all = 0;
        std::string text;
        for (const auto &[kind, count] : counts) {
            all += count;
            text += ' ' + kind + ' ' + std::to_string(count);
        }
        printf("%s %d:%s\n", what, all, text.c_str());
    }

  private:
    std::map<std::string, int> counts;
};

// There is no way round these: the bytes would not be known to have arrived.
bool must_fail_the_conversion(const system_call_t &call, const conversion_t &conversion) {
    static const std::set<std::string> kinds = {"read",     "write",    "fsync",
                                                "truncate", "allocate", "readlink"};
    const bool is_dump = call.file == "null";
    return !conversion.is_log(call.file) && !is_dump &&
           (kinds.contains(call.kind) || (call.kind == "close" && is_beside(call.file)));
}

// The directory's sync comes after the rename.
bool comes_too_late(const system_call_t &call) {
    return call.kind == "fsync" && call.file == "ascii";
}

} // namespace

TEST(faults, each_system_call_fails_once) {
    counts_t injected;
    std::set<const message_t *> seen;
    std::set<std::string> synced;
    for (const example_t &example : examples) {
        conversion_t c(example);
        for_each_fault(c, false, [&](const fault_t &fault) {
            injected.add(fault.failed.kind);
            if (fault.failed.kind == "fsync")
                synced.insert(is_beside(fault.failed.file) ? "beside" : fault.failed.file);
            ASSERT_FALSE(c.result.crashed);
            EXPECT_TRUE(c.keeps_attributes());
            EXPECT_EQ(c.beside(), std::set<std::string>());
            if (c.result.status == 0) {
                EXPECT_TRUE(c.is_new()) << c.file();
                EXPECT_FALSE(must_fail_the_conversion(fault.failed, c));
                return;
            }
            EXPECT_EQ(c.result.status, -1);
            EXPECT_TRUE(comes_too_late(fault.failed) ? c.is_new() : c.is_old()) << c.file();
            EXPECT_FALSE(c.is_log(fault.failed.file)) << "a log never changes the status";
            const std::string message = c.last_message();
            EXPECT_TRUE(message.ends_with(strerror(fault.error))) << message;
            for (const message_t &row : messages) {
                if (row.saving == fault.saving && row.kind == fault.failed.kind) {
                    EXPECT_NE(message.find(row.text), message.npos) << message;
                    seen.insert(&row);
                }
            }
        });
    }
    injected.print("faults injected once:");
    for (const auto &[kind, answers] : errors)
        EXPECT_GT(injected.of(kind), 0) << kind;
    EXPECT_EQ(seen.size(), std::size(messages));
    EXPECT_EQ(synced, (std::set<std::string>{"beside", "ascii", configuration_file}));
}

TEST(faults, each_system_call_and_all_later_ones_fail) {
    counts_t injected;
    for (const example_t &example : examples) {
        conversion_t c(example);
        for_each_fault(c, true, [&](const fault_t &fault) {
            injected.add(fault.failed.kind);
            ASSERT_FALSE(c.result.crashed);
            EXPECT_EQ(c.beside(), std::set<std::string>());
            if (c.result.status == 0) {
                EXPECT_TRUE(c.is_new()) << c.file();
                return;
            }
            EXPECT_EQ(c.result.status, -1);
            if (!c.is_log(fault.failed.file)) {
                EXPECT_NE(c.last_message().find("failed to "), std::string::npos);
            }
            const bool may_be_torn = example.has_second_link && fault.saving;
            if (!may_be_torn) {
                EXPECT_TRUE(comes_too_late(fault.failed) ? c.is_new() : c.is_old()) << c.file();
            }
        });
    }
    injected.print("faults injected from one call on:");
    for (const auto &[kind, answers] : errors)
        EXPECT_GT(injected.of(kind), 0) << kind;
}

TEST(faults, what_cannot_be_replaced_is_written_in_place) {
    const struct {
        const char *kind;
        int error;
    } rows[] = {{"chown", EPERM},  {"chmod", EPERM},  {"xattr", EIO},
                {"xattr", ENOSPC}, {"rename", EBUSY}, {"rename", EXDEV}};
    conversion_t c(examples[0]);
    for (const auto &row : rows) {
        c.run([&](const system_call_t &call) {
            return call.kind == row.kind ? verdict_t{verdict_t::fail, row.error} : verdict_t{};
        });
        EXPECT_EQ(c.result.status, 0) << row.kind;
        EXPECT_TRUE(c.is_new() && c.same_inode && c.keeps_attributes()) << row.kind;
        EXPECT_EQ(c.beside(), std::set<std::string>()) << row.kind;
    }
}

// The file beside becomes the file that others may read; on the way there it is never open to more.
TEST(faults, nobody_reads_the_file_beside_who_may_not_read_the_file) {
    // The owner reads and writes, user 4321 reads; mode 0640, of which the group has nothing.
    const unsigned char list[] =
        "\2\0\0\0\1\0\6\0\xff\xff\xff\xff\2\0\4\0\xe1\x10\0\0\4\0\0\0\xff\xff\xff\xff"
        "\x10\0\4\0\xff\xff\xff\xff\x20\0\0\0\xff\xff\xff\xff";
    constexpr const char *access_list = "system.posix_acl_access";
    conversion_t c(examples[0]);
    int looks = 0, kinds_of_mode = 0;
    bool listed = false;
    mode_t last = 0;
    c.run([&](const system_call_t &call) {
        if (opens_target(call))
            listed = setxattr(c.path().c_str(), access_list, list, sizeof list - 1, 0) == 0;
        for (const std::string &name : c.beside()) {
            const std::string path = fs::path(c.path()).parent_path() / name;
            struct stat status = {};
            stat(path.c_str(), &status);
            const bool open_to_group =
                (status.st_mode & 070) != 0 && getxattr(path.c_str(), access_list, nullptr, 0) < 0;
            EXPECT_FALSE(open_to_group) << "before " << call.kind;
            kinds_of_mode += status.st_mode != last;
            last = status.st_mode;
            looks++;
        }
        return verdict_t{};
    });
    if (!listed)
        GTEST_SKIP() << "no access lists here";
    EXPECT_TRUE(c.is_new());
    EXPECT_GT(looks, 5);
    EXPECT_EQ(kinds_of_mode, 2) << "0600, then 0640";
}

TEST(faults, interrupted_and_short_calls_are_carried_on) {
    const char *const kinds[] = {"open", "read", "write", "fsync", "close", "allocate", "truncate"};
    counts_t injected;
    for (const example_t &example : examples) {
        conversion_t c(example);
        for (const char *kind : kinds) {
            for (const auto what : {verdict_t::fail, verdict_t::half}) {
                bool saving = false, again = false;
                c.run([&](const system_call_t &call) {
                    saving = saving || opens_target(call);
                    again = !again && saving && call.kind == kind && !c.is_log(call.file) &&
                            (what == verdict_t::fail || call.kind == "write");
                    if (again)
                        injected.add(what == verdict_t::fail ? kind : "half");
                    return again ? verdict_t{what, EINTR} : verdict_t{};
                });
                EXPECT_EQ(c.result.status, 0) << kind;
                EXPECT_TRUE(c.is_new()) << kind << c.file();
            }
        }
    }
    injected.print("interruptions:");
    for (const char *kind : kinds)
        EXPECT_GT(injected.of(kind), 0) << kind;
    EXPECT_GT(injected.of("half"), 0);
}

TEST(faults, a_kill_leaves_the_old_file_or_the_new_one) {
    counts_t killed;
    int left = 0;
    for (const example_t &example : examples) {
        if (example.has_second_link)
            continue;
        conversion_t c(example);
        for (int index = 0; index == 0 || c.result.killed; index++) {
            int count = 0;
            c.run([&](const system_call_t &call) {
                if (count++ != index)
                    return verdict_t{};
                killed.add(call.kind);
                return verdict_t{verdict_t::kill};
            });
            ASSERT_FALSE(c.result.crashed);
            EXPECT_TRUE(c.is_old() || c.is_new()) << index << c.file();
            EXPECT_TRUE(c.keeps_attributes()) << index;
            for (const std::string &name : c.beside())
                EXPECT_TRUE(is_beside(name)) << name;
            left += static_cast<int>(c.beside().size());
        }
        EXPECT_TRUE(c.is_new());
    }
    killed.print("kills:");
    EXPECT_GT(killed.of("write"), 0);
    EXPECT_GT(killed.of("fsync"), 1);
    EXPECT_GT(killed.of("rename"), 0);
    EXPECT_GT(left, 0) << "a kill before the rename leaves the file beside it";
}

TEST(faults, what_a_kill_left_behind_is_gone_with_the_next_conversion) {
    conversion_t c(examples[0]);
    c.run([](const system_call_t &call) {
        return call.kind == "rename" ? verdict_t{verdict_t::kill} : verdict_t{};
    });
    ASSERT_EQ(c.beside().size(), 1u);
    c.run_again();
    EXPECT_TRUE(c.is_new());
    EXPECT_EQ(c.beside(), std::set<std::string>());
}
