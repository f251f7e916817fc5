// What the command answers before it converts anything: help, plans, rules, and every way to use
// it wrongly.

#include "conversion/border_releases.h"
#include "infraconvert/workspace.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

using arguments_t = std::vector<std::string>;
using support::contains;
using support::workspace_t;

const std::string nul(1, '\0');

TEST(usage, wrong_arguments_and_unusable_inputs_say_what_to_do) {
    workspace_t here;
    here.write("switch.cfg", "npiv enable\n");
    here.write("zero.cfg", "vlan 1\n  na" + nul + "me\n");
    here.write("ff.cfg", "vlan 1\n\xFF");
    here.write("empty.cfg", "");
    here.write("taken.cfg", "npiv enable\n");
    here.write("taken.cfg.bak", "older\n");
    here.write("dir/readme", "");
    const auto files = here.names();
    const struct {
        arguments_t arguments;
        const char *message;
        int status = 2;
    } rows[] = {
        {{}, "Usage: infraconvert"},
        {{"plam"}, "unknown command 'plam'; did you mean 'plan'?"},
        {{"preview", "--fom", "4.1(2)", "switch.cfg"}, "'--fom'; did you mean '--from'?"},
        {{"convert", "--backp=x", "switch.cfg"}, "'--backp'; did you mean '--backup'?"},
        {{"plan", "--to", "4.1(3)"}, "missing --from RELEASE (accepted forms: 4.1(3)"},
        {{"plan", "--from", "4.1(3)"}, "missing --to RELEASE"},
        {{"plan", "--from"}, "--from"},
        {{"plan", "--from", "4.1.3", "--to", "5.0(2)"},
         "'4.1.3' is not a release; did you mean '4.1(3)'?"},
        {{"plan", "--from", "4.1(2", "--to", "5.0(2)"}, "did you mean '4.1(2)'?"},
        {{"plan", "--from", "4.1(3)", "--to", "5.0.3U2.1"}, "did you mean '5.0(3)U2(1)'?"},
        {{"plan", "--from", "4.1(3)", "--to", "5.0"}, "did you mean 5.0(1), 5.0(2), "},
        {{"audit", "--from", "4.1(2)", "--via", "4.1(3", "--to", "5.0(3)", "switch.cfg"},
         "--via: '4.1(3' is not a release"},
        {{"audit", "--from", "4.1(2)", "--via", "4.1(3)", "switch.cfg"}, "--to is missing"},
        {{"plan", "--from", "4.1(3)", "--to", "next"}, "accepted forms: 4.1(3), 5.0(3)U2(1)"},
        {{"plan", "--from", "4.1(3)", "--to", "5.0(2)", "--service", "npvi"},
         "unknown service 'npvi'; did you mean 'npiv'?"},
        {{"explain", "IC041", "switch.cfg"}, "'switch.cfg'"},
        {{"plan", "--from", "4.1(3)", "switch.cfg"}, "missing --to RELEASE"},
        {{"explain", "IC-NPIV-9"}, "unknown rule 'IC-NPIV-9'; did you mean 'IC-NPIV-0"},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)"}, "missing PATH"},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "none.cfg"},
         "none.cfg: No such file or directory",
         5},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "dir"},
         "dir/readme: the configuration is empty",
         5},
        {{"explain", "IC041", "IC043"}, "'IC043'"},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "--", "--json"},
         "--json: No such file",
         5},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "empty.cfg"},
         "configuration is empty",
         5},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "zero.cfg"},
         "zero.cfg: a zero byte at line 2, column 5 (byte 11)",
         5},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "ff.cfg"},
         "ff.cfg: a byte 0xFF at line 2, column 1 (byte 7)",
         5},
        {{"audit", "--from", "4.1(3)", "--to", "5.0(2)", "--max-size", "0", "switch.cfg"},
         "--max-size"},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "--color", "blue", "switch.cfg"},
         "blue"},
        {{"preview", "--from", "4.1(3)", "--to", "5.0(2)", "-U", "x", "switch.cfg"}, "--unified"},
        {{"preview", "--from", "4.1(2)", "--to", "5.0(2)", "--rollback", "--explain", "switch.cfg"},
         "--rollback goes neither with --explain"},
        {{"preview", "--from", "4.1(2)", "--to", "5.0(2)", "--log-dir", "empty.cfg", "switch.cfg"},
         "cannot make the folder empty.cfg"},
        {{"preview", "--from", "4.1(2)", "--to", "5.0(2)", "--save-plan", "no/p", "switch.cfg"},
         "--save-plan: no/p: there is no such folder"},
        {{"preview", "--from", "4.1(2)", "--to", "5.0(2)", "--save-plan", "./switch.cfg",
          "switch.cfg"},
         "--save-plan: ./switch.cfg is a file that is read"},
        {{"convert", "--plan", "switch.cfg"}, "switch.cfg: not a plan", 5},
        {{"convert", "--plan", "none.json"}, "none.json: No such file", 5},
        {{"convert", "--plan", "p", "--from", "4.1(2)", "switch.cfg"}, "--plan brings --from"},
        {{"convert", "--plan", "p", "--accept", "IC041"}, "--mend and --accept with it"},
        {{"convert", "--plan", "p", "--backup"}, "keeps the originals for infraconvert undo"},
        {{"preview", "--plan", "p", "--mend"}, "was made with options of its own"},
        {{"undo"}, "missing --plan FILE"},
        {{"undo", "--plan", "none.json"}, "none.json: No such file", 5},
        {{"preview", "--from", "4.1(2)", "--to", "5.0(2)", "--save-plan", "p", "-"},
         "a plan names files"},
        {{"convert", "--from", "4.1(2)", "--to", "5.0(2)", "switch.cfg", "-"},
         "standard input goes alone"},
        {{"convert", "--from", "4.1(2)", "--to", "5.0(2)", "-o", "x", "switch.cfg", "taken.cfg"},
         "go with one configuration"},
        {{"preview", "--from", "4.1(2)", "--to", "5.0(2)", "--rollback", "switch.cfg", "taken.cfg"},
         "--rollback goes with one configuration"},
        {{"convert", "--from", "4.1(2)", "--to", "5.0(2)", "--backup", "-o", "x", "switch.cfg"},
         "--backup goes with a conversion in place only"},
        {{"convert", "--from", "4.1(2)", "--to", "5.0(2)", "--backup", "taken.cfg"},
         "taken.cfg.bak exists already"},
        {{"convert", "--from", "4.1(2)", "--to", "5.0(2)", "--json", "-"},
         "--json needs standard output"},
    };
    for (const auto &row : rows) {
        const auto result = here.run(row.arguments);
        EXPECT_EQ(result.status, row.status) << row.message << '\n' << result.err;
        EXPECT_TRUE(contains(result.err, row.message)) << row.message << '\n' << result.err;
        EXPECT_TRUE(row.arguments.empty() || result.err.starts_with("infraconvert: "))
            << result.err;
        EXPECT_TRUE(result.out.empty() || contains(row.message, "the plan") ||
                    contains(row.message, "--json needs"))
            << result.out;
        EXPECT_EQ(here.names(), files) << row.message;
    }
    EXPECT_EQ(here.read("switch.cfg"), "npiv enable\n");
    EXPECT_EQ(here.read("taken.cfg"), "npiv enable\n");
}

TEST(usage, what_is_too_large_for_a_configuration_is_not_read) {
    workspace_t here;
    constexpr uint64_t megabyte = 1024 * 1024;
    here.write("folder/huge.cfg", "npiv enable\n");
    std::filesystem::resize_file(here.path("folder/huge.cfg"), 4096 * megabyte);
    here.write("two.cfg", "npiv enable\n!" + std::string(2 * megabyte, '-') + "\n");
    const auto preview = [&](std::vector<std::string> last) {
        last.insert(last.begin(), {"preview", "--from", "4.1(2)", "--to", "4.2(1)"});
        return here.run(last);
    };
    for (const char *endless : {"folder/huge.cfg", "/dev/zero"}) {
        const auto result = preview({endless});
        EXPECT_EQ(result.status, 5);
        EXPECT_TRUE(contains(result.err, std::string(endless) + ": larger than 64 MB"))
            << result.err;
        EXPECT_TRUE(contains(result.err, "let --max-size say")) << result.err;
    }
    here.input = here.read("two.cfg");
    EXPECT_EQ(preview({"--max-size", "2", "-"}).status, 5);
    EXPECT_TRUE(contains(preview({"--max-size", "3", "-"}).out, "+feature npiv"));
    EXPECT_TRUE(contains(preview({"two.cfg"}).out, "+feature npiv"));
}

TEST(usage, help_leads_with_examples_and_fits_on_a_screen) {
    const workspace_t here;
    const std::string program = here.run({"--help"}).out;
    EXPECT_TRUE(contains(program, "\n  2  the arguments are wrong\n  1  a "));
    std::istringstream commands(program.substr(program.find("\nCommands:\n") + 11));
    std::vector<std::string> names = {""};
    for (std::string line; std::getline(commands, line);) {
        if (line.starts_with("  ") && line[2] != ' ')
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    ASSERT_GT(names.size(), 6U);
    for (const std::string &name : names) {
        const auto result = here.run({"help", name});
        EXPECT_EQ(result.status, 0);
        if (name != "help") {
            EXPECT_EQ(result.out,
                      here.run(name.empty() ? arguments_t{"-h"} : arguments_t{name, "-h"}).out);
            EXPECT_LT(result.out.find("  infraconvert " + name),
                      result.out.find("Usage: infraconvert"));
        }
        std::istringstream screen(result.out);
        size_t height = 0;
        for (std::string line; std::getline(screen, line); height++)
            EXPECT_LE(line.size(), 80U) << line;
        EXPECT_LE(height, 40U) << result.out;
    }
    EXPECT_TRUE(contains(here.run({"audit", "--to", "4.1(3)"}).err,
                         "infraconvert help audit shows what there is\n"));
    EXPECT_EQ(here.run({"-V"}).out, here.run({"--version"}).out);
    EXPECT_TRUE(contains(here.run({"help", "previw"}).err, "did you mean 'preview'?"));
}

TEST(usage, odd_releases_are_told_but_taken) {
    workspace_t here;
    here.write("switch.cfg", "!Command\nversion 4.0(1a)\nnpiv enable\n");
    const auto half = here.run({"plan", "--from", "4.1(3)K2", "--to", "5.0(2)"});
    EXPECT_EQ(half.status, 0);
    EXPECT_TRUE(contains(half.err, "warning: --from: '4.1(3)K2' is an unusual release"));
    const auto beyond = here.run({"plan", "--from", "4.1(3)", "--to", "9.9(9)"});
    EXPECT_EQ(beyond.status, 0);
    const std::string last = *std::rbegin(infraconvert::border_releases);
    EXPECT_TRUE(contains(beyond.err, "--to: 9.9(9) is newer than " + last + ", the last release"))
        << beyond.err;
    EXPECT_EQ(here.run({"plan", "--from", "4.1(3)", "--to", last}).err, "");
    here.write("other.cfg", "npiv enable\n");
    for (const char *verb : {"plan", "preview", "audit", "effects"}) {
        for (const arguments_t &files : {arguments_t{"switch.cfg"}, {"switch.cfg", "other.cfg"}}) {
            arguments_t arguments = {verb, "--from", "4.0(1)", "--to", "9.9(9)"};
            arguments.insert(arguments.end(), files.begin(), files.end());
            const auto told = here.run(arguments).err;
            const size_t first = told.find(" is newer than");
            ASSERT_NE(first, told.npos) << told;
            EXPECT_EQ(told.find(" is newer than", first + 1), told.npos) << told; // told once
        }
    }
    const auto other =
        here.run({"preview", "--from", "4.1(2)", "--to", "4.1(3)K2(1)", "switch.cfg"});
    EXPECT_EQ(other.status, 0);
    EXPECT_TRUE(contains(other.err, "release 4.0(1a) wrote it, not 4.1(2)")) << other.err;
    const auto right = here.run({"preview", "--from", "4.0(1)", "--to", "4.1(2)", "switch.cfg"});
    EXPECT_FALSE(contains(right.err, "warning")) << right.err;
}

// Each pair with the rule of each service in the order in which they run.
TEST(plan, names_the_rule_of_each_service) {
    const workspace_t here;
    const struct {
        const char *from, *to;
        arguments_t rules;
    } rows[] = {
        {"4.0(1)", "4.1(3)", {"IC-QOS-04", "-", "-", "-", "-", "-"}},
        {"4.1(2)",
         "5.0(3)",
         {"IC-QOS-04", "IC-FCPS-01", "IC-NPIV-01", "-", "IC-VLAN-01", "IC-FEX-01"}},
        {"4.1(3)K1(1)", "4.1(3)K2(1)", {"-", "IC-FCPS-01", "-", "-", "-", "-"}},
        {"4.2(1)", "4.1(3)K1(1)", {"IC-QOS-01", "IC-FCPS-02", "-", "IC-MAC-01", "-", "-"}},
        {"5.0(2)", "4.0(1)", {"IC-QOS-02", "IC-FCPS-03", "IC-NPIV-02", "-", "-", "-"}},
        {"5.0(3)U2(1)", "5.0(3)U1(1)", {"IC-QOS-05", "-", "-", "-", "-", "-"}},
        {"5.0(2)", "5.0(2)", {"-", "-", "-", "-", "-", "-"}},
    };
    const arguments_t names = {"qos", "fcportsec", "npiv", "fwm", "assoc", "satmgr"};
    for (const auto &row : rows) {
        const auto result = here.run({"plan", "--from", row.from, "--to", row.to});
        EXPECT_EQ(result.status, 0) << result.err;
        size_t line = 0;
        for (size_t i = 0; i < names.size(); i++) {
            const size_t next = result.out.find('\n' + names[i] + ' ', line);
            ASSERT_NE(next, std::string::npos) << result.out;
            const size_t rule = result.out.find_first_not_of(' ', next + names[i].size() + 1);
            EXPECT_EQ(result.out.substr(rule, row.rules[i].size() + 1), row.rules[i] + ' ')
                << row.from << " to " << row.to << '\n'
                << result.out;
            line = next;
        }
    }
}

TEST(plan, takes_services_by_any_of_their_names) {
    const workspace_t here;
    const auto plan = [&](const arguments_t &services) {
        arguments_t arguments = {"plan", "--from", "4.1(2)", "--to", "5.0(3)"};
        for (const std::string &service : services)
            arguments.insert(arguments.end(), {"--service", service});
        return here.run(arguments).out;
    };
    const std::string expected = plan({"qos", "npiv"});
    EXPECT_TRUE(contains(expected, "\nnpiv") && !contains(expected, "\nfwm")) << expected;
    EXPECT_EQ(plan({"npiv,qos"}), expected);
    EXPECT_EQ(plan({"649", "SRVUUID_IPQOS_MGR"}), expected);
    EXPECT_EQ(plan({"npiv", "all"}), plan({}));
}

TEST(explain, tells_what_a_rule_does_and_when_it_applies) {
    const workspace_t here;
    const auto one = here.run({"explain", "ic-npiv-02"});
    EXPECT_EQ(one.status, 0);
    EXPECT_TRUE(contains(one.out, "turns every \"feature npiv\" back into \"npiv enable\""));
    EXPECT_TRUE(contains(one.out, "\n  from   4.1(3)K2(1) 4.1(4) 4.2(1) 5.0(1) ")) << one.out;
    EXPECT_TRUE(contains(one.out, "\n  to     3.1(1) 4.0(1) 4.1(1) 4.1(2)\n")) << one.out;
    const auto all = here.run({"explain"});
    for (const char *id : {"IC-QOS-01", "IC-QOS-05", "IC-FCPS-03", "IC-NPIV-01", "IC-MAC-01",
                           "IC-VLAN-01", "IC-FEX-01"})
        EXPECT_TRUE(contains(all.out, id)) << id;
}

} // namespace
