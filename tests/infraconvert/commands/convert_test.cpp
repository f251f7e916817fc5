// What convert writes, where, and what it leaves alone.

#include "infraconvert/workspace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

const std::string original = "npiv enable\nvlan 1\n";
const std::string converted = "feature npiv\nvlan 1\n";

// The releases between which the converters know no rule for `original`.
const arguments_t no_change = {"convert", "--from", "5.0(2)", "--to", "5.0(3)"};

arguments_t convert(const arguments_t &more) {
    arguments_t arguments = {"convert", "--from", "4.1(2)", "--to", "4.1(3)K2(1)"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

class convert_t : public ::testing::Test {
  protected:
    void SetUp() override { here.write("switch.cfg", original); }

    struct stat status(const std::string &name) const {
        struct stat result = {};
        lstat(here.path(name).c_str(), &result);
        return result;
    }

    workspace_t here;
};

TEST_F(convert_t, in_place_keeps_mode_and_symbolic_link) {
    here.write("real/switch.cfg", original);
    chmod(here.path("real/switch.cfg").c_str(), 0640);
    symlink("real/switch.cfg", here.path("link.cfg").c_str());
    const auto result = here.run(convert({"link.cfg"}));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "link.cfg: converted"));
    EXPECT_TRUE(S_ISLNK(status("link.cfg").st_mode));
    EXPECT_EQ(here.read("real/switch.cfg"), converted);
    EXPECT_EQ(status("real/switch.cfg").st_mode & 07777, 0640u);
    EXPECT_EQ(here.names(), (arguments_t{"link.cfg", "real", "real/switch.cfg", "switch.cfg"}));
}

TEST_F(convert_t, finds_the_file_in_a_directory) {
    here.write("image/ascii/system.cfg", original);
    EXPECT_EQ(here.run(convert({"image"})).status, 0);
    EXPECT_EQ(here.read("image/ascii/system.cfg"), converted);
}

TEST_F(convert_t, backup_is_the_original_with_its_mode_and_times) {
    chmod(here.path("switch.cfg").c_str(), 0600);
    const timespec times[] = {{1000000000, 0}, {1100000000, 0}};
    utimensat(AT_FDCWD, here.path("switch.cfg").c_str(), times, 0);
    const auto result = here.run(convert({"--backup", "switch.cfg"}));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(here.read("switch.cfg"), converted);
    EXPECT_EQ(here.read("switch.cfg.bak"), original);
    EXPECT_EQ(status("switch.cfg.bak").st_mode & 07777, 0600u);
    EXPECT_EQ(status("switch.cfg.bak").st_mtime, 1100000000);
    here.write("switch.cfg", original);
    EXPECT_EQ(here.run(convert({"--backup=.before", "switch.cfg"})).status, 0);
    EXPECT_EQ(here.read("switch.cfg.before"), original);
}

TEST_F(convert_t, leaves_a_file_alone_that_does_not_change) {
    const struct stat before = status("switch.cfg");
    arguments_t arguments = no_change;
    arguments.insert(arguments.end(), {"--backup", "switch.cfg"});
    const auto result = here.run(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(contains(result.err, "nothing changes; the file is untouched"));
    const struct stat after = status("switch.cfg");
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
    EXPECT_FALSE(here.has("switch.cfg.bak"));
}

TEST_F(convert_t, writes_to_another_file_or_to_standard_output) {
    const struct {
        arguments_t arguments;
        std::string output, file;
    } rows[] = {
        {{"-o", "new.cfg", "switch.cfg"}, "", converted},
        {{"--output", "-", "switch.cfg"}, converted, ""},
        {{"-"}, converted, ""},
        {{"-o", "new.cfg", "-"}, "", converted},
        {{"-o", "./switch.cfg", "switch.cfg"}, "", ""}, // in place after all
    };
    here.input = original;
    for (const auto &row : rows) {
        std::filesystem::remove(here.path("new.cfg"));
        const auto result = here.run(convert(row.arguments));
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, row.output);
        EXPECT_EQ(here.read("new.cfg"), row.file);
    }
    EXPECT_EQ(here.read("switch.cfg"), converted);
    arguments_t arguments = no_change;
    arguments.insert(arguments.end(), {"-o", "same.cfg", "switch.cfg"});
    here.run(arguments);
    EXPECT_EQ(here.read("same.cfg"), converted);
}

TEST_F(convert_t, gives_a_new_file_no_more_rights_than_the_original) {
    chmod(here.path("switch.cfg").c_str(), 0600);
    EXPECT_EQ(here.run(convert({"-o", "new.cfg", "switch.cfg"})).status, 0);
    EXPECT_EQ(status("new.cfg").st_mode & 07777, 0600u);
}

TEST_F(convert_t, keeps_the_missing_newline_at_the_end) {
    here.write("switch.cfg", "vlan 1\nnpiv enable");
    here.run(convert({"switch.cfg"}));
    EXPECT_EQ(here.read("switch.cfg"), "vlan 1\nfeature npiv");
}

TEST_F(convert_t, reports_what_it_cannot_write) {
    const auto full = here.run(convert({"-o", "/dev/full", "switch.cfg"}));
    EXPECT_EQ(full.status, 6);
    EXPECT_TRUE(contains(full.err, "infraconvert: cannot write /dev/full: No space left"));
    const auto nowhere = here.run(convert({"-o", "no/new.cfg", "switch.cfg"}));
    EXPECT_EQ(nowhere.status, 2);
    EXPECT_TRUE(contains(nowhere.err, "no/new.cfg: there is no such folder"));
    EXPECT_EQ(here.run(convert({"--backup=/no/x", "switch.cfg"})).status, 2);
    here.output_file = "/dev/full";
    EXPECT_EQ(here.run(convert({"-o", "-", "switch.cfg"})).status, 6);
    EXPECT_EQ(here.run(convert({"-o", "new.cfg", "--json", "switch.cfg"})).status, 0)
        << "the status tells of the file";
    here.output_file.clear();
    EXPECT_EQ(here.read("switch.cfg"), original);
}

TEST_F(convert_t, unreadable_files_and_unwritable_directories) {
    if (!here.can_drop_rights())
        GTEST_SKIP() << "the command is out of reach without root's rights";
    here.unprivileged = geteuid() == 0;
    chmod(here.path("switch.cfg").c_str(), 0);
    const auto unreadable = here.run(convert({"switch.cfg"}));
    EXPECT_EQ(unreadable.status, 5);
    EXPECT_TRUE(contains(unreadable.err, "switch.cfg: Permission denied"));
    chmod(here.path("switch.cfg").c_str(), 0444);
    const auto readonly = here.run(convert({"switch.cfg"}));
    EXPECT_EQ(readonly.status, 6);
    EXPECT_TRUE(contains(readonly.err, "cannot write switch.cfg: Permission denied"));
    EXPECT_EQ(here.read("switch.cfg"), original);

    chmod(here.path("switch.cfg").c_str(), 0644);
    chmod(here.path("").c_str(), 0555);
    EXPECT_EQ(here.run(convert({"-o", "new.cfg", "switch.cfg"})).status, 6);
    EXPECT_EQ(here.run(convert({"--backup", "switch.cfg"})).status, 6);
    EXPECT_EQ(here.read("switch.cfg"), original);
    EXPECT_EQ(here.run(convert({"switch.cfg"})).status, 0); // written in place
    EXPECT_EQ(here.read("switch.cfg"), converted);
    chmod(here.path("").c_str(), 0755);
}

TEST_F(convert_t, json_tells_what_was_written) {
    const json done = json::parse(here.run(convert({"--json", "--backup", "switch.cfg"})).out);
    EXPECT_EQ(done["command"], "convert");
    EXPECT_EQ(done["written"], "switch.cfg");
    EXPECT_EQ(done["backup"], "switch.cfg.bak");
    EXPECT_EQ(done["result"]["size"], converted.size());
    const json again = json::parse(here.run(convert({"--json", "switch.cfg"})).out);
    EXPECT_EQ(again["written"], nullptr);
    EXPECT_EQ(again["changed"], false);
}

// ---- Plans ----

TEST_F(convert_t, applies_exactly_what_was_planned) {
    const auto saved = here.run({"preview", "--from", "4.1(2)", "--to", "4.1(3)K2(1)", "--service",
                                 "npiv", "--save-plan", "plan.json", "switch.cfg"});
    EXPECT_EQ(saved.status, 0) << saved.err;
    const json plan = json::parse(here.read("plan.json"));
    EXPECT_EQ(plan["services"], json({"npiv"}));

    here.write("switch.cfg", original + "vlan 2\n");
    const auto stale = here.run({"convert", "--plan", "plan.json"});
    EXPECT_EQ(stale.status, 5);
    EXPECT_TRUE(contains(stale.out, "has changed since the plan was made")) << stale.out;
    EXPECT_EQ(here.read("switch.cfg"), original + "vlan 2\n");
    here.write("switch.cfg", original);

    json foreign = plan;
    foreign["configurations"][0]["result_digest"] = "0";
    here.write("plan.json", foreign.dump());
    const auto other_library = here.run({"convert", "--plan", "plan.json"});
    EXPECT_EQ(other_library.status, 1);
    EXPECT_TRUE(contains(other_library.out, "gives another result")) << other_library.out;
    EXPECT_EQ(here.read("switch.cfg"), original);

    here.write("plan.json", plan.dump());
    EXPECT_EQ(here.run({"convert", "--plan", "plan.json"}).status, 0);
    EXPECT_EQ(here.read("switch.cfg"), converted);
    EXPECT_EQ(here.run({"convert", "--plan", "plan.json"}).status, 0);
    EXPECT_EQ(here.read("switch.cfg"), converted);
    EXPECT_EQ(here.run({"undo", "--plan", "plan.json"}).status, 0);
    EXPECT_EQ(here.read("switch.cfg"), original);
}

} // namespace
