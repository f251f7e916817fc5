// Through other releases on the way, and from the release that a configuration names itself.

#include "audit/findings.h"
#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

// The example without its version line.
std::string example() {
    const std::string text = support::example();
    const size_t line = text.find("version ");
    return text.substr(0, line) + text.substr(text.find('\n', line) + 1);
}

arguments_t along(const char *command, const arguments_t &route, const arguments_t &more) {
    arguments_t arguments = {command, "--from", route.front(), "--to", route.back()};
    for (size_t i = 1; i + 1 < route.size(); i++)
        arguments.insert(arguments.end(), {"--via", route[i]});
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

// Whatever is lost.
std::string all_codes() {
    std::string codes;
    for (const auto &kind : infraconvert::finding_kinds())
        (codes += codes.empty() ? "" : ",") += kind.code;
    return codes;
}

TEST(routes, are_their_hops_one_after_the_other) {
    workspace_t here;
    for (const arguments_t &route : {arguments_t{"4.1(2)", "4.1(3)", "5.0(3)"},
                                     {"4.1(2)", "4.1(3)K2(1)", "4.2(1)", "5.0(3)"},
                                     {"4.1(2)", "4.2(1)", "4.1(3)", "4.0(1)"},
                                     {"4.1(2)", "5.0(3)", "4.1(2)"}}) {
        here.write("whole.cfg", example());
        here.write("hops.cfg", example());
        const auto with = [&](const char *file) {
            return arguments_t{"--keep-going", "--accept", all_codes(), file};
        };
        for (size_t i = 0; i + 1 < route.size(); i++)
            here.run(along("convert", {route[i], route[i + 1]}, with("hops.cfg")));
        const auto whole = here.run(along("convert", route, with("whole.cfg")));
        EXPECT_TRUE(here.read("whole.cfg") != example()) << whole.err;
        EXPECT_TRUE(here.read("whole.cfg") == here.read("hops.cfg")) << whole.err;
    }
}

TEST(routes, tell_at_which_step_it_happens) {
    workspace_t here;
    here.write("switch.cfg", example());
    const arguments_t route = {"4.1(2)", "4.1(3)", "5.0(3)"};
    const auto told = here.run(along("preview", route, {"--explain", "-U0", "switch.cfg"}));
    for (const char *wanted :
         {"4.1(2) to 4.1(3) to 5.0(3):\n step 1, 4.1(2) to 4.1(3):\n  qos       IC-QOS-04 ",
          "\n step 2, 4.1(3) to 5.0(3):\n  qos       IC-QOS-03 ",
          "from 4.1(3) to 5.0(3): 5.0(3) does not read this: commands of NPIV",
          "from 4.1(2) to 4.1(3): Ethernet1/1 input: marking of cos 4"})
        EXPECT_TRUE(contains(told.err, wanted)) << wanted << '\n' << told.err;
    for (const char *wanted :
         {"step 1 IC-QOS-04  -policy-map campus-in\n", "step 2 IC-FEX-01  -  fex associate 101\n",
          "\nstep 2 IC-QOS-03  QoS: "})
        EXPECT_TRUE(contains(told.out, wanted)) << wanted << '\n' << told.out;

    const json preview =
        json::parse(here.run(along("preview", route, {"--json", "switch.cfg"})).out);
    EXPECT_EQ(preview["route"], json(route));
    ASSERT_EQ(preview["services"].size(), 12U);
    EXPECT_EQ(preview["services"][6]["hop"], json({"4.1(3)", "5.0(3)"}));
    const json audit = json::parse(here.run(along("audit", route, {"--json", "switch.cfg"})).out);
    std::set<std::string> hops;
    for (const json &finding : audit["configurations"][0]["findings"])
        hops.insert(std::string(finding["code"]) + finding["hop"].dump());
    const std::set<std::string> expected = {R"x(IC041["4.1(2)","4.1(3)"])x",
                                            R"x(IC044["4.1(3)","5.0(3)"])x",
                                            R"x(IC054["4.1(3)","5.0(3)"])x"};
    EXPECT_EQ(hops, expected);
}

TEST(routes, end_at_the_hop_that_fails) {
    workspace_t here;
    const std::string text = "npiv enable\nclass-map a\n  match cos 1\nsystem qos\n"
                             "  service-policy gone\n";
    here.write("switch.cfg", text);
    const arguments_t route = {"4.0(1)", "4.1(2)", "4.1(3)", "5.0(3)"};
    const auto failed = here.run(along("convert", route, {"--log-dir", "logs", "switch.cfg"}));
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(here.read("switch.cfg"), text);
    EXPECT_TRUE(contains(failed.err, " step 2, 4.1(2) to 4.1(3):\n  qos       IC-QOS-04   failed"))
        << failed.err;
    EXPECT_TRUE(contains(failed.err, "as 4.1(2) has it:5:   service-policy gone")) << failed.err;
    EXPECT_FALSE(contains(failed.err, "step 3")) << failed.err;
    EXPECT_TRUE(here.has("logs/step1/qoscnv.log") && here.has("logs/step2/qoscnv.log"));
    EXPECT_FALSE(here.has("logs/step3"));
    const auto gone_on = here.run(along("preview", route, {"--keep-going", "switch.cfg"}));
    EXPECT_TRUE(contains(gone_on.err, " step 3, 4.1(3) to 5.0(3):")) << gone_on.err;
    const auto audited = here.run(along("audit", route, {"switch.cfg"}));
    EXPECT_TRUE(contains(audited.out, "\"  service-policy gone\" by then")) << audited.out;
}

TEST(routes, are_mended_saved_and_gone_back) {
    workspace_t here;
    here.write("switch.cfg", example());
    const arguments_t route = {"4.1(2)", "4.1(3)", "5.0(3)"};
    here.run(along("preview", route, {"--mend", "--save-plan", "plan.json", "switch.cfg"}));
    EXPECT_EQ(here.run({"convert", "--plan", "plan.json"}).status, 0);
    const std::string mended = here.read("switch.cfg");
    EXPECT_TRUE(contains(mended, "\nfeature npiv\n")) << mended;
    here.write("before.cfg", example());
    EXPECT_EQ(here.run(along("audit", route, {"--result", "switch.cfg", "before.cfg"})).status, 0);

    const auto back = here.run(along("preview", route, {"--rollback", "before.cfg"}));
    EXPECT_TRUE(contains(back.err, "back again, 5.0(3) to 4.1(3) to 4.1(2):")) << back.err;
    EXPECT_TRUE(contains(back.err, " step 2, 4.1(3) to 4.1(2):")) << back.err;
    const auto both = here.run(along("audit", route, {"--rollback", "before.cfg"}));
    EXPECT_TRUE(contains(both.out, "reversible")) << both.out;
}

TEST(routes, begin_where_the_version_line_says) {
    workspace_t here;
    here.write("a.cfg", "version 4.1(2)\nnpiv enable\n");
    here.write("b.cfg", "!Command\nversion 4.1(3)K1(1)\r\nport-security enable\n");
    here.write("there.cfg", "version 5.0(2)\nfeature npiv\n");
    here.write("none.cfg", "npiv enable\n version 4.1(2)\n");
    here.write("two.cfg", "version 4.1(2)\nnpiv enable\nversion 4.1(3)\n");
    here.write("odd.cfg", "version Pa55word\n");
    const auto one = here.run({"preview", "--to", "5.0(2)", "a.cfg"});
    EXPECT_TRUE(contains(one.err, "a.cfg: from 4.1(2), as its \"version\" line says")) << one.err;
    EXPECT_TRUE(contains(one.err, "a.cfg, 4.1(2) to 5.0(2):")) << one.err;
    EXPECT_EQ(here.run({"effects", "b.cfg"}).status, 0);
    const struct {
        const char *file, *problem;
    } unusable[] = {{"none.cfg", "no \"version\" line says which release wrote it"},
                    {"two.cfg", "the \"version\" lines 1 and 3 contradict one another"},
                    {"odd.cfg", "the \"version\" line 1 does not name a release"}};
    for (const auto &row : unusable) {
        const auto refused = here.run({"convert", "--to", "5.0(2)", row.file});
        EXPECT_EQ(refused.status, 5);
        EXPECT_TRUE(contains(refused.err, std::string(row.file) + ": " + row.problem))
            << refused.err;
        EXPECT_TRUE(contains(refused.err, "name the release with --from")) << refused.err;
    }

    // Stops that a configuration has behind it are none of its route.
    const auto fleet = here.run({"audit", "--to", "5.0(2)", "--via", "4.1(3)", "--json", "a.cfg",
                                 "b.cfg", "there.cfg", "none.cfg", "two.cfg"});
    EXPECT_EQ(fleet.status, 5);
    const json routes[] = {{"4.1(2)", "4.1(3)", "5.0(2)"},
                           {"4.1(3)K1(1)", "5.0(2)"},
                           {"5.0(2)", "5.0(2)"},
                           nullptr,
                           nullptr};
    const json found = json::parse(fleet.out)["configurations"];
    for (size_t i = 0; i < std::size(routes); i++)
        EXPECT_EQ(found[i]["route"], routes[i]) << found[i];
    EXPECT_TRUE(contains(fleet.err, "5 configurations, its own release to 4.1(3) to 5.0(2)"))
        << fleet.err;
    EXPECT_EQ(found[1]["state"], "changed");
    EXPECT_EQ(found[2]["state"], "unchanged");
}

} // namespace
