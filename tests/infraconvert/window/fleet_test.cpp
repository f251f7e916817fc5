// Many configurations in one audit.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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
    EXPECT_TRUE(contains(good.err, "IC065   warning  1         1 ")) << good.err;

    here.write("lost.cfg", "feature lldp\n" + attached + "class-map a\n  match cos 1\n");
    EXPECT_EQ(run({"fleet", "lost.cfg"}).status, 1); // its policy-map is missing
    here.write("lost.cfg", "feature lldp\nclass-map a\n  match cos 1\npolicy-map s\n  class a\n"
                           "    priority\n" +
                               attached);
    EXPECT_EQ(run({"fleet", "lost.cfg"}).status, 4);
    here.write("zero.cfg", std::string(3, '\0'));
    const auto worst = run({"zero.cfg", "lost.cfg", "none.cfg", "fleet"});
    EXPECT_EQ(worst.status, 5);
    for (const char *told : {"zero.cfg: unusable, ", "none.cfg: unusable, ", "fleet/a.cfg: changed",
                             "lost.cfg: changed, 1 error"})
        EXPECT_TRUE(contains(worst.out, told)) << told << '\n' << worst.out;
    EXPECT_EQ(run({}).status, 2);
}

} // namespace
