// What audit judges without converting: a result that somebody brings, and files as they are.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

const std::string untyped = "hostname sw1\n"
                            "class-map voice\n  match cos 5\n"
                            "class-map video\n  match cos 4\n"
                            "policy-map lanes\n  class voice\n    priority\n"
                            "  class video\n    bandwidth percent 40\n"
                            "system qos\n  service-policy lanes\n"
                            "snmp-server community Pa55word\n";

struct judging_t : testing::Test {
    workspace_t here;
    std::string result; // of converting `untyped` to 4.1(3)

    void SetUp() override {
        here.write("in.cfg", untyped);
        ASSERT_EQ(here.run({"convert", "--from", "4.1(2)", "--to", "4.1(3)", "-o", "result.cfg",
                            "in.cfg"})
                      .status,
                  0);
        result = here.read("result.cfg");
    }

    support::result_t judge(const arguments_t &more = {}) const {
        arguments_t all = {"audit", "--from", "4.1(2)", "--to", "4.1(3)", "--result", "result.cfg"};
        all.insert(all.end(), more.begin(), more.end());
        all.emplace_back("in.cfg");
        return here.run(all);
    }

    void change_result(const std::string &old, const std::string &now) {
        std::string text = result;
        const size_t at = text.find(old);
        ASSERT_NE(at, text.npos) << old << " in\n" << text;
        here.write("result.cfg", text.replace(at, old.size(), now));
    }
};

TEST_F(judging_t, a_good_result_passes_and_is_not_touched) {
    const auto good = judge();
    EXPECT_EQ(good.status, 0) << good.out << good.err;
    EXPECT_TRUE(good.out.starts_with("in.cfg: changed, ")) << good.out;
    EXPECT_FALSE(contains(good.out, "error")) << good.out;
    EXPECT_EQ(here.read("result.cfg"), result);
    EXPECT_EQ(here.read("in.cfg"), untyped);
}

TEST_F(judging_t, what_somebody_broke_is_told_with_its_lines_in_every_format) {
    change_result("    priority\n", "");
    const auto text = judge();
    EXPECT_EQ(text.status, 4);
    EXPECT_TRUE(contains(text.out, "priority for cos 5 is gone")) << text.out;
    const json document = json::parse(judge({"--json"}).out);
    EXPECT_EQ(document["to"], "4.1(3)");
    const json &found = document["configurations"][0]["findings"][0];
    EXPECT_EQ(found["severity"], "error");
    EXPECT_FALSE(found["before"].empty());
    const json sarif = json::parse(judge({"--format", "sarif"}).out);
    EXPECT_EQ(sarif["runs"][0]["results"][0]["ruleId"], found["code"]);
    EXPECT_EQ(judge({"--report", "page.html"}).status, 4);
    EXPECT_TRUE(contains(here.read("page.html"), "priority for cos 5 is gone"));
}

TEST_F(judging_t, what_somebody_broke_is_told_with_its_fix) {
    change_result("    priority\n", "");
    const json document = json::parse(judge({"--json", "--fixes", "fixes"}).out);
    const json &fixes = document["configurations"][0]["findings"][0]["fixes"];
    ASSERT_FALSE(fixes.empty()) << document;
    EXPECT_TRUE(contains(fixes.dump(), "    priority")) << fixes;
    EXPECT_TRUE(contains(here.read("fixes/in.cfg/after.cfg"), "\n    priority\n"));
}

// A class-map stayed behind in a form that the release does not read. Its class can have it again,
// or go.
TEST_F(judging_t, where_repairs_make_different_switches_all_are_shown_and_none_is_taken) {
    here.write("copp.cfg", "hostname sw1\n"
                           "class-map type control-plane match-any arp\n  match protocol arp\n"
                           "policy-map type control-plane copp\n  class arp\n    police pps 20\n"
                           "control-plane\n  service-policy input copp\n");
    const arguments_t down = {"--from", "5.0(3)U2(1)", "--to", "4.1(2)"};
    const auto run = [&](arguments_t all, const arguments_t &more) {
        all.insert(all.end(), down.begin(), down.end());
        all.insert(all.end(), more.begin(), more.end());
        return here.run(all);
    };
    const std::string text = run({"audit"}, {"--fixes", "fixes", "copp.cfg"}).out;
    EXPECT_TRUE(contains(text, "    > either type on the switch after the conversion:\n"
                               "        class-map arp\n          match protocol arp\n"
                               "    > or type on the switch after the conversion:\n"
                               "        policy-map copp\n          no class arp\n"))
        << text;
    const std::string lines = here.read("fixes/copp.cfg/after.cfg");
    EXPECT_TRUE(contains(lines, "\n!   class-map arp\n")) << lines;
    EXPECT_FALSE(contains(lines, "\nclass-map arp\n")) << lines;
    const auto records = run({"audit"}, {"--format", "jsonl", "copp.cfg"});
    here.write("records", records.out);
    EXPECT_TRUE(
        contains(here.run({"report", "--details", "records"}).out, "    > or type on the switch "));
    const std::string mended =
        run({"convert"}, {"--mend", "--accept", "IC010,IC046,IC047", "-o", "-", "copp.cfg"}).out;
    EXPECT_TRUE(contains(mended, "policy-map copp\n  class arp\n")) << mended;
    EXPECT_FALSE(contains(mended, "class-map arp\n")) << mended;
}

TEST_F(judging_t, files_of_fixes_are_those_of_the_last_audit) {
    change_result("    priority\n", "");
    const auto in_the_way = judge({"--fixes", "."});
    EXPECT_EQ(in_the_way.status, 2);
    EXPECT_TRUE(contains(in_the_way.err, "name another folder")) << in_the_way.err;
    EXPECT_EQ(judge({"--fixes", "fixes"}).status, 4);
    EXPECT_TRUE(std::filesystem::exists(here.path("fixes/in.cfg/after.cfg")));
    here.write("result.cfg", result);
    EXPECT_EQ(judge({"--fixes", "fixes"}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(here.path("fixes/in.cfg/after.cfg")));
}

TEST_F(judging_t, a_line_that_the_target_does_not_read_is_an_error) {
    change_result("policy-map type queuing", "policy-map type queueing");
    EXPECT_EQ(judge().status, 4);
    here.write("result.cfg", untyped); // forgotten to convert
    EXPECT_EQ(judge().status, 4);
}

TEST_F(judging_t, secrets_do_not_show) {
    change_result("community Pa55word", "community An0ther");
    const auto open = judge(), masked = judge({"--mask"});
    EXPECT_EQ(open.status, 4);
    EXPECT_TRUE(contains(open.out, "Pa55word") && contains(open.out, "An0ther")) << open.out;
    EXPECT_EQ(masked.status, 4);
    EXPECT_FALSE(contains(masked.out, "Pa55word") || contains(masked.out, "An0ther")) << masked.out;
}

TEST_F(judging_t, options_that_do_not_fit_are_refused) {
    const struct {
        arguments_t more;
        const char *message;
    } rows[] = {
        {{"--report", "result.cfg"}, "--report: result.cfg is a file that is read"},
        {{"--rollback"}, "--rollback goes with a conversion only"},
        {{"--service", "qos"}, "--service goes with a conversion only"},
        {{"result.cfg"}, "--result goes with one PATH"},
    };
    for (const auto &row : rows) {
        const auto refused = judge(row.more);
        EXPECT_EQ(refused.status, 2) << row.message;
        EXPECT_TRUE(contains(refused.err, row.message)) << refused.err;
    }
    EXPECT_EQ(here.read("result.cfg"), result);
    EXPECT_EQ(here.run({"audit", "--from", "4.1(2)", "--result", "result.cfg", "in.cfg"}).status,
              2);
    EXPECT_EQ(here.run({"audit", "--from", "4.1(2)", "--report", "p.html", "in.cfg"}).status, 2);
    EXPECT_EQ(here.run({"audit", "--from", "4.1(2)", "--fixes", "d", "in.cfg"}).status, 2);
    const auto masked = here.run(
        {"audit", "--from", "4.1(2)", "--to", "5.0(3)", "--mask", "--fixes", "d", "in.cfg"});
    EXPECT_EQ(masked.status, 2);
    EXPECT_TRUE(contains(masked.err, "goes without --mask"));
    EXPECT_FALSE(std::filesystem::exists(here.path("d")));
    here.run_program({"rm", "result.cfg"});
    EXPECT_EQ(judge().status, 5);
}

TEST_F(judging_t, files_are_checked_as_they_are) {
    const auto good = here.run({"audit", "--from", "4.1(2)", "in.cfg"});
    EXPECT_EQ(good.status, 0) << good.out;
    EXPECT_TRUE(good.out.starts_with("in.cfg: checked, no findings")) << good.out;
    here.write("in.cfg", untyped + "class-map idle\n  match cos 1\n"
                                   "interface Ethernet1/1\n  service-policy input missing\n");
    const auto bad = here.run({"audit", "--json", "--from", "4.1(2)", "in.cfg", "result.cfg"});
    EXPECT_EQ(bad.status, 4);
    const json document = json::parse(bad.out);
    EXPECT_TRUE(document["to"].is_null());
    EXPECT_EQ(document["states"]["checked"], 2);
    const std::string found = document["configurations"][0]["findings"].dump();
    EXPECT_TRUE(contains(found, "missing") && contains(found, "idle")) << found;
    // Typed maps, where the release named writes none.
    EXPECT_EQ(document["configurations"][1]["findings"][0]["severity"], "error");
    EXPECT_EQ(here.run({"audit", "--from", "4.1(3)", "result.cfg"}).status, 0);
}

} // namespace
