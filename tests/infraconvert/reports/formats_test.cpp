// SARIF.

#include "infraconvert/workspace.h"

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

} // namespace
