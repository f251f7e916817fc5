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

TEST(typed_commands, leave_out_what_stands_already) {
    commands_t commands;
    add_action(commands, "policy-map dc", "  class voice", {"    priority"});
    add_action(commands, "policy-map dc", "  class class-default", {"    bandwidth percent 9"});
    add_line(commands, "interface Ethernet1/1", "  no shutdown");
    const std::vector<std::string> needed = {"policy-map dc", "  class class-default",
                                             "    bandwidth percent 9"};
    EXPECT_EQ(lines_of(without_needless(saved, commands)), needed);
}

} // namespace
