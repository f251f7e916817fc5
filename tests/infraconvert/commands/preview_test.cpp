// What preview shows: the diff, whose lines belong to which rule, the way back, JSON.

#include "infraconvert/terminal.h"
#include "infraconvert/workspace.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

const std::string storage = "npiv enable\n"
                            "a\n"
                            "port-security enable\n"
                            "vlan 10-11\n"
                            "  fcoe\n"
                            "  name storage\n"
                            "b\n"
                            "c\n"
                            "d\n"
                            "e\n"
                            "f\n"
                            "g\n"
                            "npiv enable";

arguments_t preview(const arguments_t &more = {}) {
    arguments_t arguments = {"preview", "--from", "4.1(2)", "--to", "5.0(2)"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

class preview_t : public ::testing::Test {
  protected:
    void SetUp() override { here.write("switch.cfg", storage); }
    void TearDown() override { EXPECT_EQ(here.read("switch.cfg"), storage); }

    workspace_t here;
};

TEST_F(preview_t, shows_a_unified_diff) {
    const struct {
        arguments_t arguments;
        const char *diff;
    } rows[] = {
        {{"switch.cfg"},
         "--- switch.cfg\t4.1(2)\n+++ switch.cfg\t5.0(2)\n"
         "@@ -1,8 +1,11 @@\n-npiv enable\n+feature npiv\n a\n-port-security enable\n"
         "+feature fc-port-security\n+vlan  10\n+  fcoe\n+vlan  11\n+  fcoe\n vlan 10-11\n"
         "-  fcoe\n   name storage\n b\n c\n"
         "@@ -10,4 +13,4 @@\n e\n f\n g\n-npiv enable\n\\ No newline at end of file\n"
         "+feature npiv\n\\ No newline at end of file\n"},
        {{"--service", "npiv", "-U", "1", "--label", "old", "--label", "new", "switch.cfg"},
         "--- old\n+++ new\n@@ -1,2 +1,2 @@\n-npiv enable\n+feature npiv\n a\n"
         "@@ -12,2 +12,2 @@\n g\n-npiv enable\n\\ No newline at end of file\n"
         "+feature npiv\n\\ No newline at end of file\n"},
        {{"--service", "assoc", "--unified=0", "switch.cfg"},
         "--- switch.cfg\t4.1(2)\n+++ switch.cfg\t5.0(2)\n"
         "@@ -3,0 +4,4 @@\n+vlan  10\n+  fcoe\n+vlan  11\n+  fcoe\n@@ -5 +8,0 @@\n-  fcoe\n"},
        {{"--service", "fwm", "switch.cfg"}, ""},
    };
    for (const auto &row : rows) {
        const auto result = here.run(preview(row.arguments));
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, row.diff);
    }
}

TEST_F(preview_t, sums_up_each_service_on_standard_error) {
    const auto result = here.run(preview({"switch.cfg"}));
    for (const char *line :
         {"infraconvert: switch.cfg, 4.1(2) to 5.0(2):\n", "  qos       IC-QOS-04   unchanged\n",
          "  fcportsec IC-FCPS-01  converted     +1 -1\n",
          "  npiv      IC-NPIV-01  converted     +2 -2\n", "  fwm       -           no rule\n",
          "  assoc     IC-VLAN-01  converted     +4 -1\n"})
        EXPECT_TRUE(contains(result.err, line)) << line << result.err;
}

TEST_F(preview_t, reads_directories_and_standard_input) {
    here.write("image/ascii/system.cfg", storage);
    here.input = storage;
    const std::string expected =
        here.run(preview({"--label", "x", "--label", "y", "switch.cfg"})).out;
    for (const char *path : {"image", "-"}) {
        const auto result = here.run(preview({"--label", "x", "--label", "y", path}));
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, expected) << path;
    }
}

TEST_F(preview_t, exit_code_tells_whether_something_would_change) {
    EXPECT_EQ(here.run(preview({"--exit-code", "switch.cfg"})).status, 3);
    EXPECT_EQ(here.run(preview({"--exit-code", "--service", "fwm", "switch.cfg"})).status, 0);
}

TEST_F(preview_t, colours_on_a_terminal_unless_refused) {
    const std::string red = "\033[31m-npiv enable\033[0m";
    const auto run = [&](const char *color) {
        return here
            .run(preview({"--service", "npiv", std::string("--color=") + color, "switch.cfg"}))
            .out;
    };
    EXPECT_TRUE(contains(run("always"), red));
    EXPECT_FALSE(contains(run("auto"), "\033"));
    const struct {
        const char *variable, *color;
        bool colored;
    } rows[] = {{"NO_COLOR=", "auto", true},
                {"NO_COLOR=1", "auto", false},
                {"NO_COLOR=1", "always", true},
                {"NO_COLOR=", "never", false}};
    for (const auto &row : rows) {
        const support::terminal_t terminal;
        here.output_file = terminal.name();
        here.environment = {row.variable, "TERM=xterm"};
        run(row.color);
        EXPECT_EQ(contains(terminal.read_screen(), red), row.colored)
            << row.variable << ' ' << row.color;
    }
}

TEST_F(preview_t, explain_names_the_rule_of_each_changed_line) {
    const auto result = here.run(preview({"--explain", "-U", "0", "switch.cfg"}));
    EXPECT_EQ(result.out.substr(result.out.find("IC-")),
              "IC-NPIV-01 -npiv enable\n"
              "IC-NPIV-01 +feature npiv\n"
              "           @@ -3 +3,5 @@\n"
              "IC-FCPS-01 -port-security enable\n"
              "IC-FCPS-01 +feature fc-port-security\n"
              "IC-VLAN-01 +vlan  10\n"
              "IC-VLAN-01 +  fcoe\n"
              "IC-VLAN-01 +vlan  11\n"
              "IC-VLAN-01 +  fcoe\n"
              "           @@ -5 +8,0 @@\n"
              "IC-VLAN-01 -  fcoe\n"
              "           @@ -13 +16 @@\n"
              "IC-NPIV-01 -npiv enable\n"
              "\\ No newline at end of file\n"
              "IC-NPIV-01 +feature npiv\n"
              "\\ No newline at end of file\n"
              "\n"
              "IC-FCPS-01  FC port security: turns \"port-security enable\" into \"feature "
              "fc-port-security\" and every\n"
              "            other \"port-security\" into \"fc-port-security\"\n"
              "IC-NPIV-01  NPIV: turns every \"npiv enable\" into \"feature npiv\"\n"
              "IC-VLAN-01  VLAN-FCoE association: takes the \"fcoe\" line out of each \"vlan\" "
              "stanza and writes a\n"
              "            stanza with \"fcoe\" for each of its VLANs in front\n");
}

TEST_F(preview_t, rollback_shows_exactly_what_does_not_come_back) {
    const auto lossless = here.run(
        preview({"--rollback", "--exit-code", "--service", "npiv,fcportsec", "switch.cfg"}));
    EXPECT_EQ(lossless.status, 0);
    EXPECT_EQ(lossless.out, "");
    EXPECT_TRUE(contains(lossless.err, "switch.cfg: reversible"));
    const auto lossy = here.run(preview({"--rollback", "--exit-code", "-U0", "switch.cfg"}));
    EXPECT_EQ(lossy.status, 3);
    EXPECT_TRUE(contains(lossy.err, "switch.cfg: reversible"));
    EXPECT_EQ(lossy.out, "--- switch.cfg\t4.1(2)\n"
                         "+++ switch.cfg\t4.1(2), after 5.0(2) and back\n"
                         "@@ -3,0 +4,4 @@\n+vlan  10\n+  fcoe\n+vlan  11\n+  fcoe\n"
                         "@@ -5 +8,0 @@\n-  fcoe\n");
}

// Nothing in it is an error, but the size of the MTU does not come back by itself.
TEST_F(preview_t, rollback_says_what_brings_back_an_mtu) {
    here.write("mtu.cfg",
               "hostname sw1\nclass-map voice\n  match cos 5\nclass-map video\n  match cos 4\n"
               "policy-map dc\n  class voice\n    priority\n    mtu 9000\n"
               "system qos\n  service-policy dc\n");
    const auto way = here.run(preview({"--json", "--rollback", "mtu.cfg"}));
    const json back = json::parse(way.out);
    EXPECT_EQ(back["verdict"], "reversible with these lines");
    ASSERT_EQ(back["findings"].size(), 1) << back["findings"];
    EXPECT_EQ(back["findings"][0]["code"], "IC054");
    EXPECT_EQ(back["findings"][0]["fixes"][0]["lines"],
              json({"policy-map dc", "  class voice", "    mtu 9000"}));
    EXPECT_TRUE(contains(way.err, "mtu.cfg: reversible with these lines: "));
    const auto audit = here.run({"audit", "--rollback", "--from", "4.1(2)", "--to", "5.0(2)",
                                 "--fixes", "fixes", "mtu.cfg"});
    EXPECT_EQ(audit.status, 0);
    EXPECT_TRUE(contains(audit.out, "mtu.cfg: changed, reversible with these lines, 1 warning\n"));
    EXPECT_TRUE(here.read("fixes/mtu.cfg/after.cfg")
                    .ends_with("policy-map dc\n  class voice\n    mtu 9000\n"));
}

TEST_F(preview_t, json_says_the_same) {
    const std::string diff = here.run(preview({"switch.cfg"})).out;
    const json document = json::parse(here.run(preview({"--json", "switch.cfg"})).out);
    EXPECT_EQ(document["format_version"], 1);
    EXPECT_EQ(document["command"], "preview");
    EXPECT_EQ(document["diff"], diff);
    EXPECT_EQ(document["changed"], true);
    EXPECT_EQ(document["failed"], false);
    EXPECT_EQ(document["input"]["size"], storage.size());
    EXPECT_EQ(document["services"][2]["rules"][0]["id"], "IC-NPIV-01");
    EXPECT_EQ(document["services"][3]["no_rule_because"], "no rule for this pair of releases");
    EXPECT_EQ(document["changes"].size(), 11);
    EXPECT_EQ(document["changes"][8],
              json::parse(R"({"edit": "remove", "line": 5, "text": "  fcoe", "service": "assoc",
                              "rule": "IC-VLAN-01"})"));
    const json back = json::parse(here.run(preview({"--json", "--rollback", "switch.cfg"})).out);
    EXPECT_EQ(back["reversible"], false);
    EXPECT_EQ(back["rollback"]["services"][1]["rules"][0]["id"], "IC-FCPS-03");
    EXPECT_EQ(back["verdict"], "reversible");
    const auto plan = here.run({"plan", "--json", "--from", "4.1(2)", "--to", "5.0(2)"});
    EXPECT_EQ(json::parse(plan.out)["services"][4]["rules"][0]["id"], "IC-VLAN-01");
    const auto rule = here.run({"explain", "--json", "IC-FEX-01"});
    EXPECT_EQ(json::parse(rule.out)["rules"][0]["applies"][0]["to"][0], "5.0(3)");
    const auto wrong = here.run(preview({"--json", "none.cfg"}));
    EXPECT_EQ(json::parse(wrong.out)["exit_status"], 5);
    EXPECT_TRUE(contains(json::parse(wrong.out)["error"], "none.cfg: No such file"));
}

TEST_F(preview_t, json_survives_bytes_that_are_no_utf8) {
    here.write("latin.cfg", "banner \xE9t\xE9\nnpiv enable\n");
    const auto result = here.run(preview({"--json", "latin.cfg"}));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(json::parse(result.out)["changes"][1]["text"], "feature npiv");
}

TEST_F(preview_t, writes_no_log_outside_and_keeps_it_where_asked) {
    const bool had_log = std::filesystem::exists("/mnt/pss/npiv.log");
    const auto result =
        here.run(preview({"--log", "--log-dir", "kept", "--service", "npiv", "switch.cfg"}));
    EXPECT_TRUE(contains(result.err, "==> npiv.log <==\nnpiv_log_init(): file opened"))
        << result.err;
    EXPECT_TRUE(contains(result.err, "found npiv enable 0\n"));
    EXPECT_TRUE(contains(here.read("kept/npiv.log"), "found npiv enable 0\n"));
    EXPECT_TRUE(contains(here.read("kept/infra_convertascii.log"), "uuid = 0x289"));
    EXPECT_EQ(std::filesystem::exists("/mnt/pss/npiv.log"), had_log);
    const auto folded = here.run(preview({"--log", "--service", "qos", "switch.cfg"}));
    EXPECT_TRUE(contains(folded.err, "(left out: " + std::to_string(storage.size()) + " messages"))
        << folded.err;
}

TEST_F(preview_t, a_change_of_a_fix_has_no_service) {
    here.write("marks.cfg", "class-map voice\n  match cos 5\npolicy-map marks\n  class voice\n"
                            "    set qos-group 2\ninterface Ethernet1/1\n"
                            "  service-policy input marks\n");
    const auto told = here.run(preview({"--json", "--mend", "marks.cfg"}));
    ASSERT_EQ(told.status, 0) << told.err;
    const json changes = json::parse(told.out)["changes"];
    const json of_fix = {{"edit", "remove"},
                         {"line", 1},
                         {"text", "class-map voice"},
                         {"service", nullptr},
                         {"rule", "fix"}};
    EXPECT_NE(std::find(changes.begin(), changes.end(), of_fix), changes.end()) << changes.dump(1);
}

TEST_F(preview_t, words_that_change_stand_within_their_lines) {
    here.write("words.cfg", "a\nclass-map voice\n  match cos 5\nport-security activate vsan 2\n"
                            "vlan 10\n  fcoe\n  name storage\nnpiv enable");
    const arguments_t words = {"--service", "qos,fcportsec,npiv", "--word-diff", "-U",
                               "1",         "words.cfg"};
    const auto told = here.run(preview(words));
    EXPECT_EQ(told.out, "--- words.cfg\t4.1(2)\n+++ words.cfg\t5.0(2)\n@@ -1,5 +1,5 @@\na\n"
                        "class-map {+type qos+} voice\n  match cos 5\n"
                        "[-port-security-]{+fc-port-security+} activate vsan 2\nvlan 10\n"
                        "@@ -7,2 +7,2 @@\n  name storage\n{+feature+} npiv [-enable-]\n")
        << told.err;
    arguments_t both = words;
    both.push_back("--explain");
    EXPECT_EQ(here.run(preview(both)).status, 2);
    EXPECT_TRUE(contains(here.run(preview(both)).err, "lines have rules, words have none"));
    both.back() = "--color=always";
    EXPECT_TRUE(contains(here.run(preview(both)).out,
                         "\033[32m{+feature+}\033[0m npiv \033[31m[-enable-]\033[0m\n"));
}

} // namespace
