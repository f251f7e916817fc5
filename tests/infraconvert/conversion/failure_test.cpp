// What the command says and does when a converter fails.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using arguments_t = std::vector<std::string>;
using nlohmann::json;
using support::contains;
using support::workspace_t;

const std::string maps = "class-map c1\n  match cos 1\nclass-map c2\n  match cos 2\n"
                         "class-map c3\n  match cos 3\nclass-map c4\n  match cos 4\n"
                         "class-map c5\n  match cos 5\n";

TEST(reason, names_the_configuration_line_in_plain_words) {
    const struct {
        const char *from, *to;
        std::string configuration;
        const char *reason;
        arguments_t lines; // "number: text"
    } rows[] = {
        {"4.0(1)",
         "4.1(3)",
         maps + "policy-map p\n  class c1\n    priority\n  class c2\n    priority\n"
                "  class c3\n    priority\n  class c4\n    priority\n  class c5\n    priority\n"
                "system qos\n  service-policy p\nvlan 1\n",
         "more than four classes of its own",
         {"24:   service-policy p", "12: policy-map p"}},
        {"4.0(1)",
         "4.1(3)",
         maps + "policy-map p\n  class c1\n    priority\nsystem qos\n  service-policy q\nvlan 1\n",
         "\"service-policy\" names the policy-map q, which has no classes or does not exist",
         {"16:   service-policy q"}},
        {"4.0(1)",
         "4.1(3)",
         "class-map c$1\n\n  match cos 1\npolicy-map p\n  class c$1\n    priority\nvlan 1\n",
         "class-map c$1 has an empty line where the converter expects",
         {"3: "}},
        {"4.0(1)",
         "4.1(3)",
         "class-map c1\n  match cos 1\npolicy-map p\n  bandwidth 3\nvlan 1\n",
         "policy-map p has the line \"  bandwidth 3\" where",
         {"5:   bandwidth 3"}},
        {"4.0(1)",
         "4.1(3)",
         "class-map c1\n  match cos 1\npolicy-map p\n  class c1\n    pause no-drop\n"
         "interface Ethernet1/1\n  service-policy output p\n  no shutdown\nvlan 1\n",
         "attached to an interface",
         {"8:   service-policy output p"}},
        {"4.0(1)",
         "4.1(3)",
         "class-map c1\n  match cos 1\npolicy-map " + std::string(250, 'p') +
             "\n  class c1\n    priority\nvlan 1\n",
         "too long for the converter",
         {"4: policy-map " + std::string(250, 'p')}},
        {"5.0(2)",
         "4.1(3)",
         "class-map c1\n  match cos 1\npolicy-map p\n  class c1\nvlan 1\n",
         "is the source release right?",
         {"4: policy-map p"}},
        {"5.0(2)",
         "4.0(1)",
         "policy-map type queuing a\n  class type queuing class-default\n    bandwidth percent 1\n"
         "policy-map type queuing b\n  class type queuing class-default\n    bandwidth percent 1\n"
         "interface Ethernet1/1\n  service-policy type queuing input a\n  no shutdown\n"
         "  service-policy type queuing input b\nvlan 1\n",
         "two policy-maps in input direction, a and b",
         {"9:   service-policy type queuing input a", "11:   service-policy type queuing input b"}},
        {"4.1(3)",
         "4.2(1)",
         "policy-map type queuing p\n  class type queuing c1\n    mtu 2000\nvlan 1\n",
         "the new policy-map has no place",
         {"2: policy-map type queuing p"}},
    };
    workspace_t here;
    for (const auto &row : rows) {
        const std::string configuration = "hostname dc-1\n" + row.configuration;
        here.write("switch.cfg", configuration);
        const auto result = here.run(
            {"convert", "--service", "qos", "--from", row.from, "--to", row.to, "switch.cfg"});
        EXPECT_EQ(result.status, 1) << row.reason << result.err;
        EXPECT_TRUE(contains(result.err, "infraconvert: qos failed: ")) << result.err;
        EXPECT_TRUE(contains(result.err, row.reason)) << row.reason << '\n' << result.err;
        std::string lines;
        for (const std::string &line : row.lines)
            lines += "\n  switch.cfg:" + line;
        EXPECT_TRUE(contains(result.err, lines + "\n  qoscnv.log:")) << lines << result.err;
        EXPECT_EQ(here.read("switch.cfg"), configuration);
        EXPECT_EQ(here.names(), arguments_t{"switch.cfg"});
    }
}

// A VLAN list whose stanzas outgrow the room that the converter has.
TEST(reason, tells_of_a_refused_insertion) {
    workspace_t here;
    here.write("switch.cfg", "vlan 1-999999999\n  fcoe\n");
    const auto result = here.run({"preview", "--from", "4.1(3)", "--to", "5.0(2)", "switch.cfg"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(contains(result.err, "assoc failed: the rewritten configuration would outgrow"));
    EXPECT_TRUE(contains(result.err, "  assoc_ascii_cnv.log:")) << result.err;
}

// One service fails here, another one has something to do.
const std::string half = "npiv enable\nsystem qos\n  service-policy none\nclass-map c\n"
                         "  match cos 1\npolicy-map p\n  class c\n    priority\nvlan 1\n";
const std::string half_converted = "feature npiv" + half.substr(11);

TEST(failure, leaves_everything_as_it_was_unless_told_to_keep_going) {
    workspace_t here;
    here.write("switch.cfg", half);
    const arguments_t pair = {"--from", "4.0(1)", "--to", "5.0(2)"};
    const auto run = [&](arguments_t arguments) {
        arguments.insert(arguments.begin() + 1, pair.begin(), pair.end());
        return here.run(arguments);
    };
    const auto shown = run({"preview", "--save-plan", "plan.json", "switch.cfg"});
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.out, "");
    const auto planned = here.run({"convert", "--plan", "plan.json"});
    EXPECT_EQ(planned.status, 1);
    EXPECT_TRUE(contains(planned.out, "does not convert: qos fails")) << planned.out;
    std::filesystem::remove_all(here.path("plan.json.private"));
    std::filesystem::remove(here.path("plan.json"));
    EXPECT_EQ(run({"preview", "--rollback", "switch.cfg"}).status, 1);
    for (const arguments_t &arguments : {arguments_t{"convert", "switch.cfg"},
                                         arguments_t{"convert", "-o", "new.cfg", "switch.cfg"},
                                         arguments_t{"convert", "-o", "-", "switch.cfg"}}) {
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(contains(result.err, "nothing is written, because a service failed"));
    }
    EXPECT_EQ(here.read("switch.cfg"), half);
    EXPECT_EQ(here.names(), arguments_t{"switch.cfg"});

    const json failed = json::parse(run({"convert", "--json", "switch.cfg"}).out);
    EXPECT_EQ(failed["failed"], true);
    EXPECT_EQ(failed["written"], nullptr);
    EXPECT_EQ(failed["services"][0]["state"], "failed");
    EXPECT_EQ(failed["services"][0]["failure"]["lines"][0]["number"], 3);
    EXPECT_TRUE(contains(failed["services"][0]["failure"]["log"]["text"], "could not find"));

    EXPECT_TRUE(contains(run({"preview", "--keep-going", "switch.cfg"}).out, "+feature npiv\n"));
    // What the failed service left as it was is told like any other loss, and refused until agreed.
    EXPECT_TRUE(contains(run({"convert", "--keep-going", "switch.cfg"}).err, "--accept IC043\n"));
    EXPECT_EQ(here.read("switch.cfg"), half);
    EXPECT_EQ(run({"convert", "--keep-going", "--accept", "IC043", "switch.cfg"}).status, 1);
    EXPECT_EQ(here.read("switch.cfg"), half_converted);
}

} // namespace
