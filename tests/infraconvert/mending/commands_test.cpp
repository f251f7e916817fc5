// What typed lines make of a saved configuration.

#include "mending/commands.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert::mending;

const std::string saved = "hostname sw1\n"
                          "class-map voice\n"
                          "  match cos 5\n"
                          "policy-map dc\n"
                          "  class voice\n"
                          "    priority\n"
                          "    mtu 9000\n"
                          "  class class-default\n"
                          "!\n"
                          "interface Ethernet1/1\n"
                          "  description a\n"
                          "  no shutdown\n";

std::string with(std::string text, const std::string &was, const std::string &now) {
    return text.replace(text.find(was), was.size(), now);
}

struct row_t {
    const char *what;
    command_t typed;
    std::string was, now; // what changes in the text
};

TEST(typed_commands, make_what_the_switch_would_save) {
    const row_t rows[] = {
        {"a line of a body",
         {"class-map voice", command_t::enter, {{"  match cos 4"}}},
         "  match cos 5\n",
         "  match cos 5\n  match cos 4\n"},
        {"a line that stands there",
         {"class-map  voice", command_t::enter, {{" match cos  5"}}},
         "",
         ""},
        {"an action replaces its like",
         {"policy-map dc", command_t::enter, {{"  class voice"}, {"    mtu 1500"}}},
         "    mtu 9000\n",
         "    mtu 1500\n"},
        {"an action goes",
         {"policy-map dc", command_t::enter, {{"  class type qos voice"}, {"    priority", true}}},
         "    priority\n",
         ""},
        {"a class goes with its actions",
         {"policy-map dc", command_t::enter, {{"  class voice", true}}},
         "  class voice\n    priority\n    mtu 9000\n",
         ""},
        {"a stanza behind the last of its kind",
         {"class-map video", command_t::enter, {{"  match cos 4"}}},
         "policy-map dc\n",
         "class-map video\n  match cos 4\npolicy-map dc\n"},
        {"one ahead of the first",
         {"policy-map pq", command_t::apart, {{"  class voice"}}},
         "policy-map dc\n",
         "policy-map pq\n  class voice\npolicy-map dc\n"},
        {"a stanza goes",
         {"class-map voice", command_t::remove},
         "class-map voice\n  match cos 5\n",
         ""},
        {"a line that begins with no",
         {"interface Ethernet1/1", command_t::enter, {{"  no lldp"}}},
         "  no shutdown\n",
         "  no shutdown\n  no lldp\n"},
        {"a line at its place",
         {"interface Ethernet1/1",
          command_t::enter,
          {{"  mtu 9216"}},
          {"description a", "mtu 9216", "no shutdown"}},
         "  no shutdown\n",
         "  mtu 9216\n  no shutdown\n"},
    };
    for (const row_t &row : rows) {
        std::string expected = saved;
        expected.replace(expected.find(row.was), row.was.size(), row.now);
        EXPECT_EQ(applied(saved, {row.typed}), expected) << row.what;
        if (row.typed.how == command_t::apart)
            continue; // always one more
        EXPECT_EQ(applied(expected, without_needless(expected, {row.typed})), expected) << row.what;
    }
}

// To the switch they are one, and the last one says.
TEST(typed_commands, know_stanzas_of_one_first_line_as_one) {
    const std::string twice = "policy-map dc\n  class voice\n    mtu 9000\n    priority\n"
                              "policy-map dc\n  class voice\n    mtu 8962\n";
    const std::string once = "policy-map dc\n  class voice\n    mtu 8000\n    priority\n"
                             "policy-map dc\n  class voice\n";
    commands_t commands;
    add_action(commands, "policy-map dc", "  class voice", {"    mtu 8000"});
    EXPECT_EQ(applied(twice, commands), once);
    commands.clear();
    add_action(commands, "policy-map dc", "  class voice", {"    priority", true});
    add_action(commands, "policy-map dc", "  class voice", {"    mtu 8000", true});
    EXPECT_EQ(applied(once, commands), "policy-map dc\n  class voice\n"
                                       "policy-map dc\n  class voice\n");
}

TEST(typed_commands, leave_out_what_stands_already) {
    commands_t commands;
    add_action(commands, "policy-map dc", "  class voice", {"    priority"});
    add_action(commands, "policy-map dc", "  class class-default", {"    bandwidth percent 9"});
    add_line(commands, "interface Ethernet1/1", "  no shutdown");
    const std::vector<std::string> needed = {"policy-map dc", "  class class-default",
                                             "    bandwidth percent 9"};
    EXPECT_EQ(lines_of(without_needless(saved, commands)), needed);
}

struct typing_t {
    const char *what;
    std::string text;
    commands_t typed;
    std::string saved;
};

void expect_saved(const std::vector<typing_t> &rows) {
    for (const typing_t &row : rows)
        EXPECT_EQ(applied(row.text, row.typed), row.saved) << row.what;
}

TEST(typed_commands, find_the_place_of_a_new_stanza) {
    const std::string class_map = "class-map a\n", policy = "policy-map p\n",
                      system = "system qos\n", port = "interface Ethernet1/1\n",
                      host = "hostname sw1\n";
    const command_t c = {"class-map c"}, q = {"policy-map q"}, s = {"system qos"}, v = {"vrf x"};
    expect_saved({
        {"policy", class_map + system, {q}, class_map + "policy-map q\n" + system},
        {"policy, no class-map",
         host + system + port,
         {q},
         host + "policy-map q\n" + system + port},
        {"policy, nothing", host + port + port, {q}, host + "policy-map q\n" + port + port},
        {"policy, no port", host, {q}, host + "policy-map q\n"},
        {"class-map", host + policy + policy, {c}, host + "class-map c\n" + policy + policy},
        {"class-map, no policy", host + system, {c}, host + "class-map c\n" + system},
        {"class-map behind a policy",
         class_map + policy + "class-map b\n",
         {c},
         class_map + "class-map c\n" + policy + "class-map b\n"},
        {"class-maps behind all policies",
         policy + class_map,
         {c},
         "class-map c\n" + policy + class_map},
        {"two of them",
         class_map + policy,
         {c, {"class-map d"}},
         class_map + "class-map c\nclass-map d\n" + policy},
        {"system", policy + policy + port, {s}, policy + policy + "system qos\n" + port},
        {"system, no policy", class_map + host, {s}, class_map + host + "system qos\n"},
        {"another system",
         "system cores x\n" + policy + host,
         {s},
         "system cores x\n" + policy + "system qos\n" + host},
        {"its kind", "vrf y\n" + host, {v}, "vrf y\nvrf x\n" + host},
        {"what goes is no neighbour",
         class_map + host + policy + host,
         {{"policy-map p", command_t::remove}, q},
         class_map + "policy-map q\n" + host + host},
        {"nor ahead",
         policy + host + "policy-map r\n",
         {{"policy-map p", command_t::remove}, c},
         host + "class-map c\npolicy-map r\n"},
        {"comments stay behind",
         class_map + "  match cos 1\n!\n\n" + host,
         {c},
         class_map + "  match cos 1\nclass-map c\n!\n\n" + host},
        {"apart",
         "vlan 3\nvlan 5\n" + host,
         {{"vlan 4", command_t::apart, {{"  fcoe"}}}},
         "vlan 4\n  fcoe\nvlan 3\nvlan 5\n" + host},
        {"apart, the first", host, {{"vlan 4", command_t::apart}}, host + "vlan 4\n"},
        {"a text without an end", host + "banner x", {v}, host + "banner x\nvrf x"},
        {"no text", "", {v}, "vrf x\n"},
        {"lines ahead", "  lost\n" + host, {{"hostname sw1", command_t::remove}}, "  lost\n"},
    });
}

TEST(typed_commands, meet_stanzas_and_classes_that_stand_twice) {
    const std::string port = "interface Ethernet1/1\n";
    const std::string two = port + "  mtu 1\n!\n" + "interface  Ethernet1/1\n  mtu 2\n";
    const std::string policy = "policy-map p\n  description x\n  class a\n    mtu 1\n"
                               "    set cos 1\n    set qos-group 2\n    mtu 3\n!\n  class b\n";
    const auto in_port = [](typed_line_t line) {
        return commands_t{{"interface Ethernet1/1", command_t::enter, {std::move(line)}}};
    };
    const auto in_class = [](typed_line_t line) {
        return commands_t{
            {"policy-map p", command_t::enter, {{"  class  type qos a"}, std::move(line)}}};
    };
    expect_saved({
        {"behind the last", two, in_port({"  mtu 3"}), two + "  mtu 3\n"},
        {"known in the first", two, in_port({"  mtu  1"}), two},
        {"from the first", two, in_port({"  mtu 1", true}),
         port + "!\ninterface  Ethernet1/1\n  mtu 2\n"},
        {"both", two, {{"interface Ethernet1/1", command_t::remove}}, "!\n"},
        {"one action of a keyword", policy, in_class({"    mtu 9"}),
         with(with(policy, "mtu 1", "mtu 9"), "    mtu 3\n", "")},
        {"its second word counts", policy, in_class({"    set cos 4"}),
         with(policy, "set cos 1", "set cos 4")},
        {"one of its kind", policy, in_class({"    pause"}),
         with(policy, "    mtu 3\n", "    mtu 3\n    pause\n")},
        {"only that number goes", policy, in_class({"    mtu 2", true}), policy},
        {"of no class",
         policy,
         {{"policy-map p", command_t::enter, {{"  description x", true}}}},
         with(policy, "  description x\n", "")},
        {"a class that is gone",
         policy,
         {{"policy-map p", command_t::enter, {{"  class a", true}, {"    pause"}}}},
         "policy-map p\n  description x\n!\n  class b\n    pause\n"},
    });
}

TEST(typed_commands, come_together_once) {
    commands_t all;
    remove_line(all, "system qos", "  service-policy p");
    add_line(all, "system qos", "  service-policy q");
    add_action(all, "policy-map p", "  class a", {"    pause"});
    add_action(all, "policy-map p", "  class b", {"    pause"});
    remove_stanza(all, "class-map c");
    commands_t more;
    add_line(more, "system qos", "  service-policy q");
    add_action(more, "policy-map p", "  class a", {"    pause"});
    add_action(more, "policy-map p", "  class a", {"    mtu 1", true});
    add_line(more, "class-map c", "  match cos 1");
    more.push_back({"vlan 4", command_t::apart, {{"  fcoe"}}});
    merge(all, more);
    add_line(all, "system qos", "  x");
    remove_line(all, "system qos", "  y");
    remove_stanza(all, "class-map idle");
    EXPECT_EQ(lines_of(in_order_of_typing(all)),
              (std::vector<std::string>{"system qos", "  no service-policy p", "no class-map c",
                                        "class-map c", "  match cos 1", "policy-map p", "  class a",
                                        "    pause", "    no mtu 1", "  class b", "    pause",
                                        "system qos", "  no y", "  service-policy q", "  x",
                                        "vlan 4", "  fcoe", "no class-map idle"}));
}

// What is enough is asked of the caller: here all that holds a "2".
TEST(typed_commands, are_as_few_as_are_enough) {
    const commands_t typed = {{"policy-map p",
                               command_t::enter,
                               {{"  class a"}, {"    mtu 1"}, {"  class b"}, {"    mtu 2"}}},
                              {"policy-map q", command_t::enter, {{"  class a"}, {"    mtu 1"}}},
                              {"class-map 2", command_t::remove}};
    const auto is_enough = [](const commands_t &fewer) {
        size_t found = 0;
        for (const std::string &line : lines_of(fewer))
            found += line.find('2') != line.npos;
        return found == 2;
    };
    EXPECT_EQ(
        lines_of(without_needless(typed, is_enough)),
        (std::vector<std::string>{"policy-map p", "  class b", "    mtu 2", "no class-map 2"}));
}

} // namespace
