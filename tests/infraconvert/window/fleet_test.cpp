// Many configurations in one audit.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

TEST(fleet, looks_at_a_fleet_whatever_one_of_it_is_like) {
    workspace_t here;
    here.write("fleet/a.cfg", "npiv enable\n");
    here.write("fleet/b.cfg", "feature lldp\n");
    here.write("fleet/deep/c.cfg", "npiv enable");
    here.write("fleet/.git/d.cfg", "npiv enable\n");
    here.write("switch/ascii/system.cfg", "npiv enable\n");
    const std::string attached = "system qos\n  service-policy s\n";
    const arguments_t pair = {"--from", "4.1(2)", "--to", "5.0(2)", "--jobs", "3"};
    const auto run = [&](arguments_t more) {
        more.insert(more.begin(), "audit");
        more.insert(more.end(), pair.begin(), pair.end());
        return here.run(more);
    };
    const auto good = run({"--json", "fleet", "switch"});
    EXPECT_EQ(good.status, 0) << good.err;
    const json found = json::parse(good.out);
    const std::pair<const char *, const char *> expected[] = {
        {"fleet/a.cfg", "changed"},
        {"fleet/b.cfg", "unchanged"},
        {"fleet/deep/c.cfg", "changed"},
        {"switch/ascii/system.cfg", "changed"}};
    ASSERT_EQ(found["configurations"].size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); i++) {
        EXPECT_EQ(found["configurations"][i]["path"], expected[i].first);
        EXPECT_EQ(found["configurations"][i]["state"], expected[i].second);
    }
    EXPECT_TRUE(contains(good.err, "4 configurations")) << good.err;
    EXPECT_TRUE(contains(good.err, "IC065 in 1\n")) << good.err;

    here.write("lost.cfg", "feature lldp\n" + attached + "class-map a\n  match cos 1\n");
    EXPECT_EQ(run({"fleet", "lost.cfg"}).status, 1); // its policy-map is missing
    here.write("lost.cfg", "feature lldp\nclass-map a\n  match cos 1\npolicy-map s\n  class a\n"
                           "    priority\n" +
                               attached);
    EXPECT_EQ(run({"fleet", "lost.cfg"}).status, 4);
    here.write("zero.cfg", std::string(3, '\0'));
    const auto worst = run({"zero.cfg", "lost.cfg", "none.cfg", "fleet"});
    EXPECT_EQ(worst.status, 5);
    const auto all = run({"--details", "zero.cfg", "lost.cfg", "none.cfg", "fleet"});
    for (const char *told : {"zero.cfg: unusable, ", "none.cfg: unusable, ", "fleet/a.cfg: changed",
                             "lost.cfg: changed, 1 error"})
        EXPECT_TRUE(contains(all.out, told)) << told << '\n' << all.out;
    for (const char *told : {"6 configurations, 4.1(2) to 5.0(2): 3 need hands\n",
                             "2 unusable, 1 would lose something", "the rest          3  convert"})
        EXPECT_TRUE(contains(worst.out, told)) << told << '\n' << worst.out;
    EXPECT_EQ(run({}).status, 2);
}

// What cannot be looked at is one result among the others.
TEST(fleet, goes_on_past_folders_and_links_that_lead_nowhere) {
    workspace_t here;
    if (!here.can_drop_rights())
        GTEST_SKIP() << "the command is out of reach without root's rights";
    here.write("fleet/a.cfg", "npiv enable\n");
    here.write("fleet/closed/b.cfg", "npiv enable\n");
    here.write("fleet/listed/c.cfg", "npiv enable\n");
    here.write("fleet/z.cfg", "npiv enable\n");
    std::filesystem::create_symlink("loop", here.path("fleet/loop"));
    std::filesystem::create_symlink("gone", here.path("fleet/nowhere"));
    std::filesystem::create_symlink("..", here.path("fleet/up"));
    here.unprivileged = geteuid() == 0;
    const arguments_t command = {"audit",       "--from",    "4.1(2)", "--to",
                                 "4.1(3)K2(1)", "--details", "fleet"};
    here.run({"--version"}); // gives the files away
    chmod(here.path("fleet/closed").c_str(), 0);
    chmod(here.path("fleet/listed").c_str(), 0444);
    const auto result = here.run(command);
    chmod(here.path("fleet/closed").c_str(), 0755);
    chmod(here.path("fleet/listed").c_str(), 0755);
    EXPECT_EQ(result.status, 5) << result.err;
    for (const char *told :
         {"fleet/a.cfg: changed", "fleet/closed: unusable, fleet/closed: Permission denied",
          "fleet/listed/c.cfg: unusable, fleet/listed/c.cfg: Permission denied",
          "fleet/loop: unusable, fleet/loop: Too many levels of symbolic links",
          "fleet/nowhere: unusable, fleet/nowhere: No such file or directory",
          "fleet/z.cfg: changed"})
        EXPECT_TRUE(contains(result.out, told)) << told << '\n' << result.out;
    EXPECT_TRUE(contains(result.out, "6 configurations")) << result.out;
}

// A stack that is larger than all memory it may have is refused to every thread but the first.
TEST(fleet, needs_no_thread_but_its_own) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs more memory than may be had here";
#endif
    const workspace_t here;
    for (const char *name : {"a.cfg", "b.cfg", "c.cfg"})
        here.write(name, "npiv enable\n");
    const auto result = here.run_program(
        {"sh", "-c",
         "ulimit -s 16000000; ulimit -v 8000000; exec " + support::command_path() +
             " audit --from '4.1(2)' --to '4.1(3)K2(1)' --jobs 3 --details a.cfg b.cfg c.cfg"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "c.cfg: changed")) << result.out;
}

} // namespace
