// Which files a command is about.

#include "infraconvert/workspace.h"
#include "window/configurations.h"

#include <gtest/gtest.h>

namespace {

using infraconvert::configurations_t;
using infraconvert::find_configurations;
using names_t = std::vector<std::string>;
using support::workspace_t;

// The names relative to the folder.
names_t names_of(const workspace_t &here, const configurations_t &found) {
    names_t names;
    for (const std::string &file : found.files)
        names.push_back(std::filesystem::relative(file, here.path("")).string());
    return names;
}

TEST(configurations, within_folders_pass_by_what_is_no_switch) {
    const workspace_t here;
    const std::string configuration = "! saved\nversion 4.1(2)\nfeature lldp\n";
    for (const char *name : {"fleet/b.cfg", "fleet/a", "fleet/deep/c.conf", "fleet/.git/d.cfg",
                             "fleet/a.bak", "fleet/b.cfg~", "fleet/w.json.private/o.cfg",
                             "switch/ascii/system.cfg", "switch/other.cfg"})
        here.write(name, configuration);
    here.write("fleet/README.md", "# Our switches\n\n    interface Ethernet1/1\n");
    here.write("fleet/notes", "Our switches\nversion of this list: 3\n");
    here.write("fleet/window.json", "{\n  \"kind\": \"a plan\"\n}\n");
    here.write("fleet/empty.cfg", ""); // a backup that went wrong: to be told, not passed by
    std::filesystem::create_directory_symlink("..", here.path("fleet/up"));
    std::filesystem::create_hard_link(here.path("fleet/a"), here.path("fleet/twin"));
    std::filesystem::create_symlink("gone", here.path("fleet/nowhere"));
    std::filesystem::create_symlink("deep/c.conf", here.path("fleet/and c")); // by its own name

    const auto found = find_configurations({here.path("fleet"), here.path("switch")});
    EXPECT_EQ(names_of(here, found),
              (names_t{"fleet/a", "fleet/b.cfg", "fleet/deep/c.conf", "fleet/empty.cfg",
                       "fleet/nowhere", "switch/ascii/system.cfg"}));
    const std::string told = found.passed_by.in_words();
    for (const char *words :
         {"2 hidden entries", "1 link to a folder", "2 backups",
          "3 files that are no configurations", "README.md", "2 second names of files"})
        EXPECT_TRUE(support::contains(told, words)) << words << '\n' << told;
}

TEST(configurations, that_are_named_are_taken_once_whatever_they_are) {
    const workspace_t here;
    here.write("notes.bak", "prose\n");
    const std::string name = here.path("notes.bak");
    const auto found = find_configurations({name, "none.cfg", "-", name, "-"});
    EXPECT_EQ(found.files, (names_t{name, "none.cfg", "-"}));
    EXPECT_TRUE(support::contains(found.passed_by.in_words(), "2 second names of files"));
}

TEST(configurations, come_from_a_list) {
    workspace_t here;
    here.write("a b.cfg", "feature lldp\n");
    here.write("c.cfg", "feature lldp\n");
    here.write("lines", "a b.cfg\r\n\nc.cfg");
    here.write("nothing", "\n\n");
    here.input = std::string("c.cfg\0a b.cfg\0", 14);
    const auto audit = [&](names_t more) {
        more.insert(more.begin(),
                    {"audit", "--from", "4.1(2)", "--to", "5.0(2)", "--details", "--files-from"});
        return here.run(more);
    };
    const auto lines = audit({"lines"});
    EXPECT_EQ(lines.status, 0) << lines.err;
    EXPECT_TRUE(lines.out.starts_with("a b.cfg: unchanged")) << lines.out;
    EXPECT_TRUE(support::contains(lines.out, "2 configurations")) << lines.out;
    EXPECT_TRUE(audit({"-"}).out.starts_with("c.cfg: unchanged"));
    EXPECT_EQ(audit({"-", "-"}).status, 2);
    EXPECT_EQ(audit({"nothing"}).status, 2);
    EXPECT_EQ(audit({"none"}).status, 5);
}

} // namespace
