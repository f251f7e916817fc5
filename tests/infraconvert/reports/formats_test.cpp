// SARIF: what the schema of the format cannot tell. The other formats are held by tests/engines.

#include "infraconvert/workspace.h"
#include "reports/formats.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>

namespace {

using nlohmann::json;
using support::contains;
using support::workspace_t;

TEST(sarif, names_rules_and_lines) {
    workspace_t here;
    here.write("a b.cfg", "version 4.0(1)\nnpiv enable\n");
    const auto result =
        here.run({"audit", "--format", "sarif", "--from", "4.1(2)", "--to", "5.0(2)", "a b.cfg"});
    const json run = json::parse(result.out)["runs"][0];
    std::set<std::string> rules;
    for (const json &rule : run["tool"]["driver"]["rules"])
        rules.insert(rule["id"].get<std::string>());
    const json &first = run["results"][0];
    EXPECT_EQ(first["ruleId"], "IC064");
    EXPECT_EQ(first["level"], "warning");
    const json &place = first["locations"][0]["physicalLocation"];
    EXPECT_EQ(place["artifactLocation"]["uri"], "a%20b.cfg");
    EXPECT_EQ(place["region"]["startLine"], 1);
    for (const json &each : run["results"])
        EXPECT_TRUE(rules.contains(each["ruleId"].get<std::string>())) << each;
}

// Of very many findings a scanner gets as many as it takes: every code shows, and the counts add
// up.
TEST(sarif, counts_what_would_be_too_many) {
    using namespace infraconvert;
    std::string text;
    const auto writer = sarif_writer([&](std::string_view piece) { text += piece; });
    writer->begin({.tool_version = "1", .date = "", .route = {"4.1(2)", "5.0(3)"}, .services = {}});
    constexpr size_t often = 30000, seldom = 3;
    audited_t audited;
    audited.file = "a.cfg";
    audited.route = {"4.1(2)", "5.0(3)"};
    audited.findings = {{finding_kind_named("IC041"), "gone", {{7, "  service-policy a"}}, {}},
                        {finding_kind_named("IC041"), "gone", {{9, "  service-policy b"}}, {}}};
    for (size_t i = 0; i < often / 2; i++)
        writer->add(audited);
    audited.findings = {{finding_kind_named("IC010"), "", {}, {}}};
    for (size_t i = 0; i < seldom; i++)
        writer->add(audited);
    writer->end({});

    const json results = json::parse(text)["runs"][0]["results"];
    EXPECT_LE(results.size(), 25000U);
    std::map<std::string, size_t> told;
    for (const json &result : results)
        told[result["ruleId"]] += result.value("occurrenceCount", size_t{1});
    EXPECT_EQ(told, (std::map<std::string, size_t>{{"IC010", seldom}, {"IC041", often}}));
    EXPECT_NE(results[0]["partialFingerprints"], results[1]["partialFingerprints"]);
    EXPECT_TRUE(contains(results.back()["message"]["text"].get<std::string>(), " configurations"));
}

} // namespace
