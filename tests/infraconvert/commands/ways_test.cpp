// plan: what changes where, and which way is the best for some configurations.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::example;
using support::workspace_t;

TEST(borders, tell_what_begins_and_ends_where) {
    const workspace_t here;
    const auto told = here.run({"plan"});
    EXPECT_EQ(told.status, 0) << told.err;
    for (const char *wanted :
         {"4.1(3)        up to it, from 4.1(2) and older: IC-QOS-04\n",
          "\n4.1(4)        up to it no more: IC-QOS-04\n",
          "\n5.0(1)        up to it, from 4.1(1) ... 4.1(4): IC-VLAN-01\n",
          "\n5.0(2)        type qos class-maps are written with \"match-any\" from here on\n",
          "\nIC-FEX-01     fabric extender: puts "})
        EXPECT_TRUE(contains(told.out, wanted)) << wanted << '\n' << told.out;
    EXPECT_FALSE(contains(told.out, "\n4.1(2) ")) << told.out; // nothing changes there

    const json npiv = json::parse(here.run({"plan", "--service", "npiv", "--json"}).out);
    const json expected = {{"way", "up"},
                           {"end", "to"},
                           {"service", "npiv"},
                           {"rule", "IC-NPIV-01"},
                           {"others", {"3.1(1)", "4.0(1)", "4.1(1)", "4.1(2)"}}};
    const auto border =
        std::find_if(npiv["releases"].begin(), npiv["releases"].end(),
                     [](const json &each) { return each["release"] == "4.1(3)K2(1)"; });
    EXPECT_EQ(border->at("changes")[0], expected);
}

// The way that has this route.
json way_of(const json &configuration, const arguments_t &route) {
    for (const json &way : configuration["ways"]) {
        const auto &routes = way["routes"];
        if (std::find(routes.begin(), routes.end(), json(route)) != routes.end())
            return way;
    }
    return nullptr;
}

TEST(ways, show_no_secret_with_mask) {
    workspace_t here;
    here.write("switch.cfg", "version 4.1(2)\nvlan 20\n  password port-security zqsecret\n");
    const arguments_t plan = {"plan", "--json", "--to", "5.0(3)", "switch.cfg"};
    EXPECT_TRUE(contains(here.run(plan).out, "zqsecret"));
    arguments_t masked_plan = plan;
    masked_plan.insert(masked_plan.end() - 1, "--mask");
    const std::string masked = here.run(masked_plan).out;
    EXPECT_FALSE(contains(masked, "zqsecret")) << masked;
    const json configuration = json::parse(masked)["configurations"][0];
    const json direct = way_of(configuration, {"4.1(2)", "5.0(3)"});
    EXPECT_EQ(direct["findings"][0]["before"][0]["text"], "  <masked>");
    EXPECT_EQ(direct["result"]["sha256"], nullptr);
}

TEST(ways, are_compared_by_what_the_switch_does) {
    workspace_t here;
    here.write("switch.cfg", example());
    const auto text = here.run({"plan", "--to", "5.0(3)", "switch.cfg"});
    EXPECT_EQ(text.status, 4) << text.err;
    EXPECT_TRUE(text.out.starts_with("switch.cfg, 4.1(2) to 5.0(3): 29 routes, 11 results, the "
                                     "best first\n1. 4.1(2) to 5.0(3)\n   the same bytes via "))
        << text.out;
    EXPECT_TRUE(contains(text.out, "from 4.1(2) to 5.0(3): A policy that only marks is not "
                                   "attached any more (4 times)\n"))
        << text.out;
    EXPECT_TRUE(contains(text.err, "best: directly")) << text.err;

    const json plan = json::parse(here.run({"plan", "--to", "5.0(3)", "--json", "switch.cfg"}).out);
    const json &configuration = plan["configurations"][0];
    EXPECT_EQ(plan["choices"][0]["via"], json::array());
    const json direct = way_of(configuration, {"4.1(2)", "5.0(3)"});
    EXPECT_EQ(direct, way_of(configuration, {"4.1(2)", "5.0(2)", "5.0(3)"}));
    EXPECT_EQ(direct["as_direct"], true);
    const json other = way_of(configuration, {"4.1(2)", "4.1(3)", "5.0(3)"});
    EXPECT_EQ(other["as_direct"], false);
    EXPECT_EQ(other["unexplained"], json::array());
    EXPECT_GT(other["lost"], direct["lost"]);
    // What is lost at a stop is lost there, whichever release reads it in the end.
    const json through = way_of(configuration, {"4.1(2)", "4.1(3)", "5.0(1)", "5.0(3)"});
    for (const json &finding : through["findings"]) {
        const json expected = {"4.1(3)", "5.0(1)"};
        EXPECT_TRUE(finding["code"] != "IC044" || finding["hop"] == expected) << finding;
    }
    // The way is what preview makes of it, and the way back what a rollback leaves.
    const json preview = json::parse(
        here.run({"preview", "--json", "--to", "5.0(3)", "--via", "4.1(3)", "switch.cfg"}).out);
    EXPECT_EQ(preview["result"], other["result"]);
    const auto back =
        here.run({"audit", "--rollback", "--to", "5.0(3)", "--via", "4.1(3)", "switch.cfg"});
    EXPECT_FALSE(other["back"]["left_behind"].empty());
    for (const json &finding : other["back"]["left_behind"])
        EXPECT_TRUE(contains(back.out, std::string(finding["code"]))) << back.out;
}

// The order of the ways, what each loses and where, what it does otherwise, and what comes back.
TEST(ways, are_told_the_best_first) {
    workspace_t here;
    here.write("w.cfg", "version 4.1(2)\nhostname sw1\nnpiv enable\nclass-map a\n  match cos 1\n"
                        "class-map b\n  match cos 2\npolicy-map p\n  class a\n    priority\n"
                        "    mtu 9000\n  class b\n    bandwidth percent 10\npolicy-map m\n"
                        "  class a\n    set qos-group 2\nsystem qos\n  service-policy p\n"
                        "interface Ethernet1/1\n  service-policy input m\nvlan 10-11\n  fcoe\n");
    EXPECT_EQ(
        here.run({"plan", "--to", "5.0(3)", "--via", "4.1(3),4.1(4),4.2(1)", "w.cfg"}).out,
        "w.cfg, 4.1(2) to 5.0(3): 8 routes, 8 results, the best first\n"
        "1. 4.1(2) to 5.0(3)\n"
        "   1 effect or line lost; the way back leaves 1 error (IC041)\n"
        "     error    IC041  from 4.1(2) to 5.0(3): A policy that only marks is not attached any "
        "more\n"
        "2. 4.1(2) to 4.2(1) to 5.0(3)\n"
        "   2 effects or lines lost; the way back leaves 1 error (IC041)\n"
        "     error    IC041  from 4.1(2) to 4.2(1): A policy that only marks is not attached any "
        "more\n"
        "     error    IC069  from 4.2(1) to 5.0(3): fcoe of a VLAN stands where the release does "
        "not read it\n"
        "3. 4.1(2) to 4.1(3) to 4.1(4) to 5.0(3)\n"
        "   2 effects or lines lost, other effects than directly; the way back leaves 1 error "
        "(IC043)\n"
        "     error    IC041  from 4.1(2) to 4.1(3): A policy that only marks is not attached any "
        "more\n"
        "     error    IC044  from 4.1(3) to 4.1(4): A command stays in the form of the other "
        "release\n"
        "4. 4.1(2) to 4.1(3) to 5.0(3)\n"
        "   3 effects or lines lost, other effects than directly; the way back leaves 1 error "
        "(IC043)\n"
        "     error    IC041  from 4.1(2) to 4.1(3): A policy that only marks is not attached any "
        "more\n"
        "     error    IC044  from 4.1(3) to 5.0(3): A command stays in the form of the other "
        "release\n"
        "     warning  IC054  from 4.1(3) to 5.0(3): An MTU was converted more than once\n"
        "5. 4.1(2) to 4.1(3) to 4.1(4) to 4.2(1) to 5.0(3)\n"
        "   3 effects or lines lost, other effects than directly; the way back leaves 1 error "
        "(IC043)\n"
        "     error    IC041  from 4.1(2) to 4.1(3): A policy that only marks is not attached any "
        "more\n"
        "     error    IC044  from 4.1(3) to 4.1(4): A command stays in the form of the other "
        "release\n"
        "     error    IC069  from 4.2(1) to 5.0(3): fcoe of a VLAN stands where the release does "
        "not read it\n"
        "6. 4.1(2) to 4.1(3) to 4.2(1) to 5.0(3)\n"
        "   4 effects or lines lost, other effects than directly; the way back leaves 1 error "
        "(IC043)\n"
        "     error    IC041  from 4.1(2) to 4.1(3): A policy that only marks is not attached any "
        "more\n"
        "     error    IC044  from 4.1(3) to 4.2(1): A command stays in the form of the other "
        "release\n"
        "     error    IC069  from 4.2(1) to 5.0(3): fcoe of a VLAN stands where the release does "
        "not read it\n"
        "     warning  IC054  from 4.1(3) to 4.2(1): An MTU was converted more than once\n"
        "7. 4.1(2) to 4.1(4) to 5.0(3)\n"
        "   7 effects or lines lost, other effects than directly; the way back restores "
        "everything\n"
        "     error    IC043  from 4.1(2) to 4.1(4): Text stayed in the form of the old release\n"
        "8. 4.1(2) to 4.1(4) to 4.2(1) to 5.0(3)\n"
        "   8 effects or lines lost, other effects than directly; the way back restores "
        "everything\n"
        "     error    IC043  from 4.1(2) to 4.1(4): Text stayed in the form of the old release\n"
        "     error    IC069  from 4.2(1) to 5.0(3): fcoe of a VLAN stands where the release does "
        "not read it\n");
}

TEST(ways, of_a_fleet_have_a_best_for_all) {
    workspace_t here;
    here.write("fleet/a.cfg", example());
    here.write("fleet/b.cfg", "version 4.1(2)\nvlan 10,20\n  fcoe\n");
    here.write("fleet/c.cfg", "version 4.2(1)\nfeature npiv\n");
    here.write("fleet/failing.cfg", "version 4.1(2)\nclass-map a\n  match cos 1\nsystem qos\n"
                                    "  service-policy gone\n");
    here.write("fleet/odd.cfg", "feature npiv\nvlan 1\n");
    const arguments_t stops = {"--to", "5.0(3)", "--via", "4.1(4),4.2(1)"};
    arguments_t arguments = {"plan", "fleet"};
    arguments.insert(arguments.end(), stops.begin(), stops.end());
    const auto told = here.run(arguments);
    EXPECT_EQ(told.status, 5) << told.err;
    EXPECT_TRUE(contains(told.err, "fleet/odd.cfg: no \"version\" line")) << told.err;
    EXPECT_TRUE(contains(told.err, "best for all: via 4.1(4)")) << told.out << told.err;
    EXPECT_TRUE(contains(told.out, "  x    ")) << told.out;

    arguments.emplace_back("--json");
    const json plan = json::parse(here.run(arguments).out);
    ASSERT_EQ(plan["configurations"].size(), 5U);
    EXPECT_EQ(plan["configurations"][0]["ways"].size(), 4U);
    // From 4.2(1) on there is one way only, and every choice comes to it.
    EXPECT_EQ(plan["configurations"][2]["ways"].size(), 1U);
    size_t choices = 0;
    for (const json &choice : plan["choices"])
        choices += choice["alike"].size();
    EXPECT_EQ(choices, 4U);
    const auto through_4_2 =
        std::find_if(plan["choices"].begin(), plan["choices"].end(),
                     [](const json &choice) { return choice["via"] == json({"4.2(1)"}); });
    EXPECT_EQ(through_4_2->at("failing"), 1);
    EXPECT_EQ(through_4_2->at("losing"), 2) << plan["choices"]; // a.cfg, and the VLANs of b.cfg
    EXPECT_EQ(
        way_of(plan["configurations"][3], {"4.1(2)", "4.1(4)", "4.2(1)", "5.0(3)"})["failure"],
        nullptr);
}

} // namespace
