// Names and lines that try to be something else: a second file in a diff, a message, a command to
// the terminal; and names that are no text at all.

#include "infraconvert/terminal.h"
#include "infraconvert/workspace.h"

#include "base/exact_text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

const arguments_t releases = {"--from", "4.1(2)", "--to", "4.1(3)K2(1)"};

support::result_t run(const workspace_t &here, arguments_t words) {
    words.insert(words.begin() + 1, releases.begin(), releases.end());
    return here.run(words);
}

TEST(odd_name, with_newlines_forges_no_patch) {
    workspace_t here;
    const std::string name = "a\n--- victim\n+++ victim\n@@ -1 +1 @@\n-precious\n+forged\n";
    here.write(name, "npiv enable\n");
    here.write("victim", "precious\n");
    const auto shown = run(here, {"preview", name});
    EXPECT_TRUE(shown.out.starts_with("--- \"a\\n--- victim\\n+++")) << shown.out;
    EXPECT_FALSE(contains(shown.err, "\n--- victim")) << shown.err;
    here.input = shown.out;
    EXPECT_EQ(here.run_program({"patch", "-p0"}).status, 0);
    EXPECT_EQ(here.read("victim"), "precious\n");
    EXPECT_EQ(here.read(name), "feature npiv\n");
    EXPECT_EQ(run(here, {"preview", "--label", "a\nb", name}).status, 2);
}

TEST(odd_name, that_is_no_text_is_kept_in_json_and_plans) {
    workspace_t here;
    const std::string name = "caf\xe9\xff.cfg";
    here.write(name, "npiv enable\nbanner \xe9\n");
    const auto shown = run(here, {"preview", "--json", "--save-plan", "plan.json", name});
    EXPECT_EQ(shown.status, 0) << shown.err;
    const json preview = json::parse(shown.out);
    EXPECT_EQ(infraconvert::exact_bytes(preview, "path"), name);
    EXPECT_EQ(preview["changes"][0]["text"], "npiv enable");
    here.input = infraconvert::exact_bytes(preview, "diff");
    EXPECT_EQ(here.run_program({"patch", "-p0", "--dry-run"}).status, 0);
    const json audit = json::parse(run(here, {"audit", "--json", name}).out);
    EXPECT_EQ(infraconvert::exact_bytes(audit["configurations"][0], "path"), name);
    const json done = json::parse(here.run({"convert", "--json", "--plan", "plan.json"}).out);
    EXPECT_EQ(infraconvert::exact_bytes(done["configurations"][0], "path"), name);
    EXPECT_EQ(here.read("caf\xe9\xff.cfg"), "feature npiv\nbanner \xe9\n");
}

// What standard output shows on a terminal.
std::string on_terminal(workspace_t &here, const arguments_t &words) {
    const support::terminal_t terminal;
    here.output_file = terminal.name();
    here.environment = {"TERM=xterm"};
    run(here, words);
    here.output_file.clear();
    return terminal.read_screen();
}

TEST(odd_line, does_not_reach_the_terminal_as_it_is) {
    workspace_t here;
    here.write("\033]0;title\a.cfg", "npiv enable\n");
    here.write("switch.cfg", "npiv enable\ndescription \033[2J npiv enable \x9b\n");
    const std::string shown = on_terminal(here, {"preview", "--color=never", "switch.cfg"});
    EXPECT_TRUE(contains(shown, "description ^[[2J npiv enable <9B>")) << shown;
    EXPECT_FALSE(contains(shown, "\033")) << shown;
    const auto piped = run(here, {"preview", "switch.cfg"});
    EXPECT_TRUE(contains(piped.out, "description \033[2J npiv enable \x9b")) << "for patch";
    for (const auto &result :
         {piped, run(here, {"preview", "\033]0;title\a.cfg"}), run(here, {"audit", "switch.cfg"}),
          run(here, {"preview", "--log", "switch.cfg"}), run(here, {"preview", "no\033"}),
          run(here, {"preview", "--no\033", "switch.cfg"})})
        EXPECT_FALSE(contains(result.err, "\033")) << result.err;
    EXPECT_FALSE(contains(run(here, {"audit", "switch.cfg"}).out, "\033"));
}

} // namespace
