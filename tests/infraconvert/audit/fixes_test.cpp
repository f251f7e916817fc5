// Findings as they are counted, placed and joined with their fixes.

#include "infraconvert/workspace.h"

#include "audit/audit.h"
#include "audit/fixes.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace infraconvert;
using mending::fix_place_t;
using mending::mended_t;
using nlohmann::json;
using texts_t = std::vector<std::string>;

finding_t finding(const char *code, const std::string &words = "") {
    return {finding_kind_named(code), words, {}, {}};
}

meaning::difference_t told(finding_code_t code, const std::string &words) {
    return {code, words, {}, {}, {}};
}

mending::fix_t typed(const std::vector<meaning::difference_t> &mends, const std::string &header) {
    return {.place = fix_place_t::after, .codes = {}, .mends = mends, .commands = {{header}}};
}

TEST(findings, are_counted_in_words) {
    finding_t agreed = finding("IC001");
    agreed.accepted = agreement_t{};
    const struct {
        std::vector<finding_t> findings;
        const char *words;
    } rows[] = {
        {{}, "no findings"},
        {{finding("IC001")}, "1 error"},
        {{finding("IC058"), finding("IC058")}, "2 warnings"},
        {{agreed}, "1 agreed"},
        {{finding("IC001"), agreed, finding("IC058"), finding("IC002"), finding("IC025"), agreed},
         "2 errors, 1 warning, 1 note, 2 agreed"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(count_text(count_findings(row.findings)), row.words);
}

// What a finding of many has is mended step by step, and its words change: the code tells.
TEST(findings, get_the_fixes_that_are_for_them) {
    std::vector<finding_t> findings = {finding("IC030", "a"), finding("IC030", "b"),
                                       finding("IC030", "a"), finding("IC040", "c"),
                                       finding("IC058", "d"), finding("IC021", "e")};
    mended_t mended;
    mended.fixes = {typed({told("IC030", "a"), told("IC040", "part of c")}, "policy-map p"),
                    typed({told("IC030", "a")}, "policy-map p"),
                    typed({told("IC040", "rest of c"), told("IC058", "x")}, "system qos")};
    mended.by_hand = {
        {told("IC030", "rest of b"), "why", {{{"class-map one"}}, {{"class-map two"}}}}};
    add_fixes(findings, mended, "");
    const auto fixes = [&](size_t at) {
        texts_t lines;
        for (const fix_text_t &fix : findings[at].fixes)
            lines.insert(lines.end(), fix.lines.begin(), fix.lines.end());
        return lines;
    };
    EXPECT_EQ(fixes(0), texts_t{"policy-map p"});
    EXPECT_EQ(fixes(2), texts_t{"policy-map p"});
    EXPECT_EQ(findings[0].fixes[0].restores, (texts_t{"a", "part of c"}));
    EXPECT_EQ(findings[1].by_hand, "why");
    ASSERT_EQ(findings[1].choices.size(), 2U);
    EXPECT_EQ(findings[1].choices[1].time, fix_time_t::after);
    EXPECT_EQ(findings[1].choices[1].lines, texts_t{"class-map two"});
    EXPECT_EQ(findings[1].choices[1].restores, texts_t{"rest of b"});
    EXPECT_EQ(fixes(3), texts_t{"policy-map p"});
    EXPECT_TRUE(findings[4].fixes.empty() && findings[4].by_hand.empty()); // a warning
    EXPECT_EQ(findings[5].by_hand, "why"); // the first reason stands for what nothing is about

    findings = {finding("IC021", "e")};
    mended.by_hand.clear();
    add_fixes(findings, mended, "");
    EXPECT_EQ(fixes(0), (texts_t{"policy-map p", "system qos"}));
    EXPECT_EQ(lines_to_type(mended), "! IC030: a\n! IC040: part of c\npolicy-map p\n"
                                     "! IC030: a\npolicy-map p\n"
                                     "! IC040: rest of c\n! IC058: x\nsystem qos\n");

    findings = {finding("IC021", "e")};
    add_fixes(findings, {}, "");
    EXPECT_EQ(findings[0].by_hand, "no edit that means the same was found with which it converts");
}

// An edit for a conversion that failed is for all its errors, and each of its places one change.
TEST(findings, show_edits_of_the_original_by_their_places) {
    std::vector<finding_t> findings = {finding("IC090"), finding("IC018"), finding("IC058")};
    mended_t mended;
    mended.fixes = {{.place = fix_place_t::before,
                     .codes = {"IC090"},
                     .mends = {},
                     .edited = "new\na\nB\nb\nc\nE\nf\n",
                     .words = "x"}};
    add_fixes(findings, mended, "a\nb1\nb\nc\nd\ne\nf\n");
    ASSERT_EQ(findings[0].fixes.size(), 1U);
    EXPECT_EQ(findings[1].fixes.size(), 1U);
    EXPECT_TRUE(findings[2].fixes.empty());
    const fix_text_t &fix = findings[0].fixes[0];
    EXPECT_EQ(fix.time, fix_time_t::before);
    EXPECT_EQ(fix.lines, (texts_t{"+new", "-b1", "+B", "-d", "-e", "+E"}));
    std::vector<std::tuple<size_t, size_t, std::string>> replacements;
    for (const replacement_t &each : fix.replacements)
        replacements.emplace_back(each.line, each.removed, each.text);
    EXPECT_EQ(replacements, (std::vector<std::tuple<size_t, size_t, std::string>>{
                                {1, 0, "new\n"}, {2, 1, "B\n"}, {5, 2, "E\n"}}));
    EXPECT_EQ(lines_to_type(mended), ""); // it is no line for a switch
}

TEST(findings, of_a_way_back_have_a_verdict) {
    const std::string whole = "hostname sw1\nfeature lldp\n";
    const struct {
        std::string result;
        const char *verdict;
    } rows[] = {{whole, "reversible"},
                {"hostname sw1\n", "reversible with these lines"},
                {"  lost\nhostname sw1\n", "not reversible"}};
    for (const auto &row : rows)
        EXPECT_STREQ(judge_with_fixes(whole, row.result, {"4.1(2)", "4.1(3)", "4.1(2)"}).verdict(),
                     row.verdict);
}

// The hop of a finding is the last one before which it was not so, whichever release reads it.
TEST(findings, of_a_route_have_the_hop_at_which_they_happen) {
    std::vector<finding_t> findings = {
        finding("IC001", "from the start"), finding("IC044", "5.0(3) does not read 5.0(3)"),
        finding("IC044", "5.0(3) does not read x"), finding("IC001", "comes and goes"),
        finding("IC001", "at the end")};
    tell_hops(findings, {"4.1(2)", "4.1(3)", "4.2(1)", "5.0(3)"}, [](size_t hops) {
        std::vector<meaning::difference_t> differences = {
            told("IC001", "from the start"), told("IC002", "at the end"),
            told("IC044", std::string(hops == 2 ? "4.2(1)" : "4.1(3)") + " does not read x")};
        if (hops == 2)
            differences.push_back(told("IC044", "4.2(1) does not read 4.2(1)"));
        else
            differences.push_back(told("IC001", "comes and goes"));
        return differences;
    });
    const texts_t first = {"4.1(2)", "4.1(3)"}, second = {"4.1(3)", "4.2(1)"},
                  last = {"4.2(1)", "5.0(3)"};
    const texts_t expected[] = {first, second, first, last, last};
    for (size_t i = 0; i < findings.size(); i++)
        EXPECT_EQ(findings[i].hop, expected[i]) << findings[i].detail;
}

// What a service that was left out would have done is no work for fixes.
TEST(findings, of_services_that_were_left_out_have_no_fixes) {
    support::workspace_t here;
    here.write("switch.cfg", "hostname sw1\nnpiv enable\n");
    const auto first_error = [&](const texts_t &more) {
        texts_t all = {"audit", "--json", "switch.cfg"};
        all.insert(all.end(), more.begin(), more.end());
        return json::parse(here.run(all).out)["configurations"][0]["findings"][0];
    };
    for (const texts_t &route : {texts_t{"--from", "4.1(2)", "--to", "5.0(2)"},
                                 {"--from", "4.0(1)", "--via", "4.1(2)", "--to", "5.0(2)"}}) {
        texts_t left_out = route;
        left_out.insert(left_out.end(), {"--service", "fwm"});
        const json unmended = first_error(left_out);
        EXPECT_EQ(unmended["code"], "IC044") << unmended;
        EXPECT_TRUE(unmended["fixes"].empty() && unmended["by_hand"].is_null()) << unmended;
    }
    // Where no service has a rule, none was left out.
    here.write("switch.cfg", "hostname sw1\nport-security enable\n");
    const json mended =
        first_error({"--from", "4.1(3)", "--service", "npiv", "--to", "4.1(3)K1(1)"});
    EXPECT_FALSE(mended["fixes"].empty()) << mended;
}

} // namespace
