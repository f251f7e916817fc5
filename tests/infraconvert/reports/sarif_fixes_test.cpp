// Edits of an original as SARIF tells them to an editor: they make what before.patch makes.

#include "infraconvert/workspace.h"

#include "base/lines.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <set>

namespace {

using nlohmann::json;
using support::workspace_t;
using lines_t = std::vector<std::string>;

lines_t lines_of(const std::string &text) {
    lines_t lines;
    for (const std::string_view line : infraconvert::split_lines(text))
        lines.emplace_back(line);
    return lines;
}

// Regions are whole lines of the file as it was; the last one first, so that all stay true.
std::string edited(const std::string &text, const json &replacements) {
    lines_t lines = lines_of(text);
    for (auto each = replacements.rbegin(); each != replacements.rend(); ++each) {
        const json &region = (*each)["deletedRegion"];
        EXPECT_EQ(region["startColumn"], 1);
        EXPECT_EQ(region["endColumn"], 1);
        const auto first = lines.begin() + region["startLine"].get<int>() - 1;
        const auto next = lines.begin() + region["endLine"].get<int>() - 1;
        const lines_t now = lines_of((*each)["insertedContent"]["text"]);
        lines.insert(lines.erase(first, next), now.begin(), now.end());
    }
    std::string result;
    for (const std::string &line : lines)
        result += line;
    return result;
}

// What a unified diff makes; every line that it names must stand there.
std::string patched(const std::string &text, const std::string &patch) {
    const lines_t before = lines_of(text);
    std::string result;
    size_t at = 0;
    lines_t script = lines_of(patch);
    for (size_t i = 1; i < script.size(); i++) { // "\\ No newline at end of file"
        if (script[i][0] == '\\')
            script[i - 1].pop_back();
    }
    for (const std::string &line : script) {
        if (line.starts_with("\\") || line.starts_with("---") || line.starts_with("+++"))
            continue;
        size_t first = 0;
        if (sscanf(line.c_str(), "@@ -%zu", &first) == 1) {
            while (at + 1 < first)
                result += before[at++];
        } else if (line[0] == '+') {
            result += line.substr(1);
        } else {
            EXPECT_EQ(line.substr(1), before.at(at));
            if (line[0] == ' ')
                result += line.substr(1);
            at++;
        }
    }
    while (at < before.size())
        result += before[at++];
    return result;
}

const std::string maps = "class-map voice\n  match cos 5\nclass-map video\n  match cos 4\n";
const std::string policy = "policy-map dc\n  class voice\n    priority\n  class video\n"
                           "    bandwidth percent 30\n";
const std::string attached = "system qos\n  service-policy dc\n";
const std::string port = "interface Ethernet1/1\n  shutdown\n";

struct case_t {
    const char *what;
    std::string text;
};

TEST(sarif, edits_are_those_of_the_patch) {
    const case_t cases[] = {
        {"another depth, and empty lines", "hostname sw1\n" + maps +
                                               "\npolicy-map dc\n class voice\n   priority\n\n" +
                                               attached + port},
        {"stanzas in another order", "hostname sw1\n" + attached + port + policy + maps},
        {"an attachment of nothing",
         "hostname sw1\npolicy-map none\n" + maps + policy + attached +
             "interface Ethernet1/1\n  service-policy input none\n  shutdown\n"},
        {"a map on the first line, and no newline at the end", maps + policy + attached + "! end"},
    };
    for (const case_t &each : cases) {
        const workspace_t here;
        here.write("switch.cfg", each.text);
        const std::vector<std::string> audit = {"audit",  "--from",    "4.1(2)", "--to",
                                                "4.1(3)", "--fixes",   "fixes",  "--format",
                                                "sarif",  "switch.cfg"};
        const json document = json::parse(here.run(audit).out);
        std::set<std::string> made;
        for (const json &result : document["runs"][0]["results"]) {
            for (const json &fix : result.value("fixes", json::array()))
                made.insert(edited(each.text, fix["artifactChanges"][0]["replacements"]));
        }
        ASSERT_EQ(made.size(), 1) << each.what << document.dump(1);
        EXPECT_EQ(*made.begin(), patched(each.text, here.read("fixes/switch.cfg/before.patch")))
            << each.what;
        EXPECT_NE(*made.begin(), each.text) << each.what;
    }
}

} // namespace
