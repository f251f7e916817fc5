// The page of an audit, and SARIF.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>

namespace {

using nlohmann::json;
using support::contains;
using support::workspace_t;

// The text of the page's element after a browser ran its script.
class browser_t {
  public:
    explicit browser_t(const workspace_t &place) : here(place) {
        for (const char *name : {"chromium-headless-shell", "chromium"}) {
            if (program.empty() && here.run_program({name, "--version"}).status == 0)
                program = name;
        }
    }

    bool exists() const { return !program.empty(); }

    std::string content(const std::string &query) const {
        return here
            .run_program({program, "--headless", "--no-sandbox", "--disable-gpu", "--dump-dom",
                          "file://" + here.path("page.html").string() + '#' + query})
            .out;
    }

  private:
    const workspace_t &here;
    std::string program;
};

// The names of the configurations that the page shows.
std::string shown_names(const std::string &content) {
    std::string names;
    const std::string box = "<details class=\"configuration\"", name = "class=\"name\">";
    for (size_t at = 0; (at = content.find(box, at)) != content.npos; at++) {
        const std::string start = content.substr(at, content.find('>', at) - at);
        const size_t text = content.find(name, at) + name.size();
        if (!contains(start, "hidden"))
            names += content.substr(text, content.find('<', text) - text) + ' ';
    }
    return names;
}

TEST(audit_page, filters_and_shows_details_in_a_browser) {
    workspace_t here;
    const browser_t browser(here);
    if (!browser.exists())
        GTEST_SKIP() << "no browser here";
    here.write("a.cfg", "npiv enable\n  description </script><b>bold</b> npiv enable\n");
    here.write("b.cfg", "feature lldp\n");
    here.write("c.cfg", "feature lldp\nport-security enable");
    here.write("d.cfg", std::string(1, '\0'));
    here.run({"audit", "--from", "4.1(2)", "--to", "5.0(2)", "--report", "page.html", "a.cfg",
              "b.cfg", "c.cfg", "d.cfg"});
    const std::pair<const char *, const char *> rows[] = {
        {"", "a.cfg b.cfg c.cfg d.cfg "},  {"code=IC065", "c.cfg "},
        {"service=npiv", "a.cfg "},        {"state=unusable", "d.cfg "},
        {"state=changed", "a.cfg c.cfg "}, {"severity=warning&name=A.C", "a.cfg "},
    };
    for (const auto &[query, names] : rows)
        EXPECT_EQ(shown_names(browser.content(query)), names) << query;
    const std::string open = browser.content("open=0");
    EXPECT_TRUE(contains(open, "description &lt;/script&gt;&lt;b&gt;bold&lt;/b&gt; feature npiv"))
        << open.substr(0, 4000);
    EXPECT_TRUE(contains(open, "class=\"finding warning\""));
    EXPECT_FALSE(contains(browser.content(""), "class=\"finding warning\""));
}

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
