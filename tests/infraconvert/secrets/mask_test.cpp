// Secrets in what the command tells: differences, findings, reasons, logs, documents and pages.

#include "infraconvert/secrets/lists.h"
#include "infraconvert/workspace.h"
#include "support/converter_process.h"
#include "support/golden.h"

#include "base/diff.h"
#include "secrets/mask.h"

#include <gtest/gtest.h>
#include <regex>

namespace {

using namespace infraconvert;
using arguments_t = std::vector<std::string>;
using support::contains;
using support::workspace_t;

const std::filesystem::path directory = SECRETS_DIRECTORY;

// Everything that the converters touch, and after it one in so many of the lines that hold a
// secret.
std::string configuration(std::string_view secret, size_t one_in) {
    std::string text = support::read_file(directory / "../../../examples/switch.cfg");
    const auto entries = support::entries_with_secrets(directory / "lists");
    for (size_t i = 0; i < entries.size(); i += one_in)
        text += support::with_secret(entries[i], secret);
    return text + "npiv enable\nport-security enable\nvlan 77\n  fcoe\ninterface Ethernet1/99\n"
                  "  fex associate 101\n  switchport mode fex-fabric\n";
}

// What one command shows and leaves behind, without what differs from run to run.
std::string everything_told(arguments_t command, std::string_view secret) {
    workspace_t here;
    // The more lines, the longer an audit searches for fixes: all of them are seen by the previews.
    here.write("switch.cfg", configuration(secret, command[0] == "preview" ? 1 : 10));
    command.insert(command.end(), {"--mask", "switch.cfg"});
    const auto told = here.run(command);
    EXPECT_NE(told.status, 2) << told.err;
    std::string all = told.out + told.err;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(here.path(""))) {
        const std::string name = entry.path().filename();
        if (entry.is_regular_file() && name != "switch.cfg" && name != "new.cfg")
            all += "==> " + name + '\n' + support::read_file(entry.path());
    }
    static const std::regex moment(R"(0x[0-9a-f]{6,}|<\w{3} \w{3} .*\d{4}>|"date": ?"[^"]*")");
    return std::regex_replace(all, moment, "");
}

TEST(mask, tells_the_same_whatever_the_secrets_are) {
    const std::vector<arguments_t> commands = {
        {"preview", "-U", "9999", "--keep-going", "--log"},
        {"preview", "--keep-going", "--json", "--log-dir", "logs"},
        {"preview", "--keep-going", "--rollback", "-U", "99", "--log"},
        {"preview", "--explain", "--service", "npiv,fcportsec,assoc,satmgr"},
        {"audit", "--keep-going", "--report", "page.html"},
        {"audit", "--keep-going", "--json", "--details"},
        {"audit", "--keep-going", "--format", "sarif"},
        {"audit", "--jobs", "2"},
        {"convert", "--json", "--keep-going", "--output", "new.cfg", "--log"},
    };
    for (arguments_t command : commands) {
        const bool down = command.back() == "--log";
        command.insert(command.end(), {"--from", down ? "5.0(3)U2(1)" : "4.1(2)"});
        command.insert(command.end(), {"--to", down ? "4.1(3)" : "5.0(3)"});
        const std::string told = everything_told(command, "Zq7topXsecret");
        EXPECT_FALSE(contains(told, "topXsecret")) << command[0] << command[1];
        EXPECT_TRUE(contains(told, "masked>")) << command[0] << command[1];
        EXPECT_EQ(everything_told(command, "Q"), told) << command[0] << command[1];
    }
}

TEST(mask, leaves_words_of_our_own_and_what_shows) {
    struct row_t {
        const char *told, *masked;
    };
    mask_t mask;
    mask.learn("policy-map gold\n  class voice\nusername bob password 7 voice\n"
               "interface Ethernet1/1\n  description voice 4711\nvlan 10\nPIN 4711 and \"x\"\n");
    const row_t messages[] = {
        {"policy-map gold, class voice", "policy-map gold, class voice"},
        {"policy-map grey, class voice", "policy-map <masked>, class voice"},
        {"was under \"interface Ethernet1/1\", is under \"vlan 10\"",
         "was under \"interface Ethernet1/1\", is under \"vlan 10\""},
        {"stood under \"username bob password 7 voice\"", "stood under \"username bob <masked>\""},
        {"the line \"description voice 4711\" where a class is expected",
         "the line \"description <masked>\" where a class is expected"},
        {"stood under \"PIN 4711 and \"x\"\"", "stood under \"<masked>\""},
        {"username bob password 7 voice, type qos", "username bob <masked>, type qos"},
        {"3 of 9 lines, in 2 stanzas: PIN x2, secret, policy-map",
         "3 of 9 lines, in 2 stanzas: <masked>, policy-map"},
        {"expected 4711", "expected <masked>"},
        {"expected 4712", "expected 4712"},
    };
    for (const row_t &row : messages)
        EXPECT_EQ(mask.message(row.told), row.masked);
    const row_t logs[] = {
        {"x_y(): found class name voice\n", "x_y(): found class name voice\n"},
        {"x_y(): found class name grey, class voice", "x_y(): found class name <masked>"},
        {" \tdescription voice 4711 \n", " \tdescription <masked> \n"},
        {"found class-map at byte 712\n", "found class-map at byte <masked>\n"},
        {"to_ver = 5.0(3), from_ver = 4.1(2)\n", "to_ver = 5.0(3), from_ver = 4.1(2)\n"},
    };
    for (const row_t &row : logs)
        EXPECT_EQ(mask.logs(row.told), row.masked);
}

std::string without_free_texts(const std::string &configuration) {
    std::string text;
    for (const std::string_view line : split_lines(configuration)) {
        const bool free = line.find("description") != line.npos || line.starts_with('!') ||
                          line.find("remark") != line.npos || line == "vlan 60 61\n";
        text += free ? "" : line;
    }
    return text;
}

// What findings and reasons say is made of known words, so that a masked audit says as much. The
// conversions that have most to tell are those with traps and those that fail.
TEST(mask, leaves_findings_without_secrets_alone) {
    workspace_t here;
    size_t audited = 0;
    for (const support::golden_t &golden : support::golden_cases()) {
        if (!golden.is_trap() && !golden.fails())
            continue;
        here.write("in.cfg", without_free_texts(golden.before()));
        const auto told =
            here.run({"audit", "--mask", "--from", golden.from, "--to", golden.to, "in.cfg"});
        EXPECT_FALSE(contains(told.out, "<masked>")) << golden.folder << told.out;
        audited++;
    }
    EXPECT_GT(audited, 10u);
}

} // namespace
