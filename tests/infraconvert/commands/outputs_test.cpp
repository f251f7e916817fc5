// Everything that a command writes: never over what it reads, by whatever name; for no more people
// than the configuration; not through somebody else's link; not over what others did meanwhile.

#include "infraconvert/workspace.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using arguments_t = std::vector<std::string>;
using support::contains;
using support::workspace_t;

const std::string original = "npiv enable\nvlan 1\n";
const std::string converted = "feature npiv\nvlan 1\n";

arguments_t with_releases(const arguments_t &words) {
    arguments_t arguments = words;
    arguments.insert(arguments.begin() + 1, {"--from", "4.1(2)", "--to", "4.1(3)K2(1)"});
    return arguments;
}

class outputs_t : public ::testing::Test {
  protected:
    void SetUp() override { here.write("switch.cfg", original); }

    support::result_t run(const arguments_t &words) const { return here.run(with_releases(words)); }
    support::result_t shell(const std::string &line) const {
        return here.run_program({"sh", "-c",
                                 "run() { command=$1; shift; " + support::command_path() +
                                     " \"$command\" --from '4.1(2)' --to "
                                     "'4.1(3)K2(1)' \"$@\"; }; " +
                                     line});
    }
    mode_t mode(const std::string &name) const {
        struct stat status = {};
        stat(here.path(name).c_str(), &status);
        return status.st_mode & 07777;
    }

    workspace_t here;
};

TEST_F(outputs_t, are_never_what_is_read) {
    here.write("npiv.log", original); // as a converter's log is called
    here.write("bak", original);
    fs::create_symlink("switch.cfg", here.path("link"));
    fs::create_hard_link(here.path("switch.cfg"), here.path("second"));
    fs::create_directory(here.path("folder"));
    fs::create_symlink("..", here.path("folder/up"));
    const std::string whole = here.path("switch.cfg");
    run({"preview", "--save-plan", "plan.json", "switch.cfg"});
    const std::string plan = here.read("plan.json");
    const arguments_t rows[] = {
        {"audit", "--report", "switch.cfg", "switch.cfg"},
        {"audit", "--report", "./folder/../switch.cfg", "switch.cfg"},
        {"audit", "--report", whole, "npiv.log", "switch.cfg"},
        {"audit", "--report", "link", "switch.cfg"},
        {"audit", "--report", "switch.cfg", "link"},
        {"audit", "--report", "second", "switch.cfg"},
        {"audit", "--report", "folder/up/switch.cfg", "switch.cfg"},
        {"audit", "--report", "folder/up/switch.cfg", "."},
        {"preview", "--save-plan", "second", "switch.cfg"},
        {"preview", "--log-dir", ".", "npiv.log"},
        {"convert", "--log-dir", "folder/up", "npiv.log"},
        {"convert", "-o", "switch.cfg", "-"}, // which is the same file
    };
    for (const auto &row : rows) {
        const auto result = shell("exec <switch.cfg; run " + [&] {
            std::string words;
            for (const std::string &word : row)
                words += " '" + word + "'";
            return words;
        }());
        EXPECT_EQ(result.status, 2) << result.err;
        EXPECT_TRUE(contains(result.err, " that is read")) << result.err;
    }
    EXPECT_EQ(here.run({"convert", "--plan", "plan.json", "-o", "plan.json"}).status, 2);
    EXPECT_EQ(shell("run preview switch.cfg >>switch.cfg").status, 2);
    EXPECT_EQ(run({"preview", "--save-plan", "new", "--log-dir", "new", "switch.cfg"}).status, 2);
    for (const char *name : {"switch.cfg", "npiv.log", "second"})
        EXPECT_EQ(here.read(name), original) << name;
    EXPECT_EQ(here.read("plan.json"), plan);
}

TEST_F(outputs_t, need_a_name) {
    const arguments_t rows[] = {
        {"convert", "--output", "", "switch.cfg"},
        {"convert", "-o", "", "switch.cfg"},
        {"convert", "--output=", "switch.cfg"},
        {"convert", "--log-dir=", "switch.cfg"},
        {"preview", "--save-plan", "", "switch.cfg"},
        {"audit", "--report", "", "switch.cfg"},
        {"audit", ""},
    };
    for (const auto &row : rows)
        EXPECT_EQ(run(row).status, 2) << row[1];
    EXPECT_EQ(here.names(), arguments_t{"switch.cfg"});
    EXPECT_EQ(here.read("switch.cfg"), original);
}

// Each output, new and in the place of a file that everybody may read, in a folder that gives new
// files to another group and to one more user.
TEST_F(outputs_t, are_for_no_more_people_than_the_configuration) {
    // Owner, user 4321 and group read and write, as the kernel stores it.
    const unsigned char list[] = "\2\0\0\0\1\0\6\0\xff\xff\xff\xff\2\0\6\0\xe1\x10\0\0\4\0\6\0\xff"
                                 "\xff\xff\xff\x10\0\6\0\xff\xff\xff\xff\x20\0\6\0\xff\xff\xff\xff";
    fs::create_directory(here.path("out"));
    setxattr(here.path("out").c_str(), "system.posix_acl_default", list, sizeof list - 1, 0);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(here.path("out").c_str(), 0, 4321), 0);
        chmod(here.path("out").c_str(), 02777);
    }
    const struct {
        arguments_t words;
        arguments_t files;
    } rows[] = {
        {{"preview", "--save-plan", "out/plan", "switch.cfg"}, {"out/plan"}},
        {{"audit", "--report", "out/page", "switch.cfg"}, {"out/page"}},
        {{"audit", "--report", "out/page", "switch.cfg", "other.cfg"}, {"out/page"}},
        {{"preview", "--log-dir", "out", "switch.cfg"}, {"out/npiv.log", "out/fcportsec.log"}},
        {{"convert", "-o", "out/new.cfg", "switch.cfg"}, {"out/new.cfg"}},
        {{"convert", "--backup=.bak", "switch.cfg"}, {"switch.cfg", "switch.cfg.bak"}},
    };
    here.write("other.cfg", original);
    for (const mode_t input : {0600, 0640, 0644}) {
        for (const bool existed : {false, true}) {
            for (const auto &row : rows) {
                for (const std::string &file : row.files) {
                    fs::remove(here.path(file));
                    if (existed && !file.ends_with(".bak")) {
                        here.write(file, "earlier");
                        chmod(here.path(file).c_str(), 0666);
                    }
                }
                here.write("switch.cfg", original);
                chmod(here.path("switch.cfg").c_str(), input);
                chmod(here.path("other.cfg").c_str(), 0644);
                std::string words = "umask 0; run";
                for (const std::string &word : row.words)
                    words += " '" + word + "'";
                EXPECT_EQ(shell(words).status, 0) << words;
                const mode_t wanted = row.words.back() == "other.cfg" ? mode_t{0600} : input;
                for (const std::string &file : row.files) {
                    struct stat status = {};
                    stat(here.path(file).c_str(), &status);
                    EXPECT_EQ(mode(file), wanted) << file << words;
                    EXPECT_TRUE(wanted == 0600 || status.st_gid == getegid()) << file;
                    EXPECT_LT(
                        getxattr(here.path(file).c_str(), "system.posix_acl_access", nullptr, 0), 0)
                        << file;
                }
            }
        }
    }
}

TEST_F(outputs_t, of_standard_input_are_the_owners_alone) {
    here.input = original;
    EXPECT_EQ(shell("umask 0; cat switch.cfg | run convert -o new.cfg -").status, 0);
    EXPECT_EQ(mode("new.cfg"), 0600u);
}

TEST_F(outputs_t, do_not_follow_links_where_everybody_may_write) {
    fs::create_directory(here.path("shared"));
    chmod(here.path("shared").c_str(), 01777);
    here.write("victim", "precious");
    fs::create_symlink("../victim", here.path("shared/page"));
    fs::create_symlink("../victim", here.path("shared/npiv.log"));
    fs::create_symlink(here.path(""), here.path("shared/logs"));
    fs::create_symlink("victim", here.path("own"));
    for (const arguments_t &words :
         {arguments_t{"audit", "--report", "shared/page", "switch.cfg"},
          arguments_t{"preview", "--save-plan", "shared/page", "switch.cfg"},
          arguments_t{"preview", "--log-dir", "shared", "switch.cfg"},
          arguments_t{"preview", "--log-dir", "shared/logs", "switch.cfg"},
          arguments_t{"convert", "-o", "shared/page", "switch.cfg"}})
        EXPECT_EQ(run(words).status, 2) << words[1];
    EXPECT_EQ(here.read("victim"), "precious");
    EXPECT_EQ(run({"convert", "-o", "own", "switch.cfg"}).status, 0);
    EXPECT_TRUE(fs::is_symlink(here.path("own")));
    EXPECT_EQ(here.read("victim"), converted);
}

TEST_F(outputs_t, are_there_whole_or_not_at_all) {
    here.write("page", "earlier");
    const auto full = shell("trap '' XFSZ; ulimit -f 1; run audit --report page switch.cfg >&2");
    EXPECT_EQ(full.status, 6) << full.err;
    EXPECT_EQ(here.read("page"), "earlier");
    EXPECT_EQ(here.names(), (arguments_t{"page", "switch.cfg"}));
}

// ---- A file that others look after too ----

TEST_F(outputs_t, a_file_that_somebody_else_converts_is_left_alone) {
    const int other = open(here.path("switch.cfg").c_str(), O_RDONLY);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    const auto result = run({"convert", "--backup", "switch.cfg"});
    EXPECT_EQ(result.status, 6);
    EXPECT_TRUE(contains(result.err, "switch.cfg is locked")) << result.err;
    EXPECT_EQ(run({"preview", "switch.cfg"}).status, 0);
    EXPECT_EQ(here.read("switch.cfg"), original);
    close(other);
    EXPECT_EQ(run({"convert", "switch.cfg"}).status, 0);
}

TEST_F(outputs_t, a_backup_of_the_same_bytes_is_no_obstacle) {
    here.write("switch.cfg.bak", original);
    const auto again = run({"convert", "--backup", "switch.cfg"});
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(here.read("switch.cfg"), converted);
    EXPECT_EQ(here.read("switch.cfg.bak"), original);

    here.write("switch.cfg", original);
    fs::remove(here.path("switch.cfg.bak"));
    fs::create_symlink("switch.cfg", here.path("switch.cfg.bak")); // would hold something else then
    EXPECT_EQ(run({"convert", "--backup", "switch.cfg"}).status, 2);
    EXPECT_EQ(here.read("switch.cfg"), original);
}

} // namespace
