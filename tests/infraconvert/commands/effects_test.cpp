// The effect table as it is shown: one screen for people, rows for programs.

#include "infraconvert/workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using support::contains;
using support::workspace_t;

const std::string maps =
    "hostname sw1\nclass-map voice\n  match cos 5\nclass-map video\n  match cos 4\n"
    "policy-map lanes\n  class voice\n    priority\n"
    "  class video\n    bandwidth percent 10\n"
    "  class class-default\n    mtu 9000\n    bandwidth percent 40\n"
    "policy-map ports\n  class voice\n    set qos-group 2\n"
    "system qos\n  service-policy lanes\n";

std::string with_ports(const std::string &text) {
    std::string all = text;
    for (const char *port : {"1/1", "1/2", "1/3", "1/10", "2/3"})
        all += std::string("interface Ethernet") + port + "\n  service-policy input ports\n";
    return all;
}

TEST(effects, places_with_the_same_rows_stand_together_and_columns_align) {
    workspace_t here;
    here.write("in.cfg", with_ports(maps));
    const auto shown = here.run({"effects", "--from", "4.1(2)", "in.cfg"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_EQ(shown.err, "");
    EXPECT_EQ(shown.out, "system\n"
                         "  class-default                    mtu 9000\n"
                         "  class-default  input and output  bandwidth percent 40\n"
                         "  cos 4          input and output  bandwidth percent 10\n"
                         "  cos 5          input and output  priority\n"
                         "Ethernet1/1-3, Ethernet1/10, Ethernet2/3\n"
                         "  cos 5          input             goes with cos 5\n");
}

TEST(effects, what_a_conversion_loses_is_marked) {
    workspace_t here;
    here.write("in.cfg", with_ports(maps));
    const auto shown = here.run({"effects", "--from", "4.1(2)", "--to", "4.1(3)", "in.cfg"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_TRUE(contains(shown.out, "\n  lost  cos 5          input             goes with"))
        << shown.out;
    EXPECT_TRUE(contains(shown.out, "        class-default                    mtu 8962\n"))
        << "the same size, counted otherwise\n"
        << shown.out;
    const auto text =
        here.run({"effects", "--json", "--from", "4.1(2)", "--to", "4.1(3)", "in.cfg"});
    const json document = json::parse(text.out);
    EXPECT_EQ(document["to"], "4.1(3)");
    const json mtu = {{"place", "system"},
                      {"direction", nullptr},
                      {"traffic", "class-default"},
                      {"effect", "mtu 8962"},
                      {"change", nullptr}};
    EXPECT_EQ(document["rows"].size(), 12);
    EXPECT_NE(std::find(document["rows"].begin(), document["rows"].end(), mtu),
              document["rows"].end())
        << text.out;
}

TEST(effects, a_failing_conversion_shows_what_there_was) {
    workspace_t here;
    here.write("in.cfg", maps + "class-map spoiled\n\n  match cos 7\n");
    const auto failed = here.run({"effects", "--from", "4.1(2)", "--to", "5.0(3)", "in.cfg"});
    EXPECT_EQ(failed.status, 1) << failed.out << failed.err;
    EXPECT_TRUE(contains(failed.out, "priority")) << failed.out;
    EXPECT_FALSE(contains(failed.out, "lost")) << failed.out;
    EXPECT_TRUE(contains(failed.err, "before the conversion, which fails")) << failed.err;
}

// Many are told apart, and what one of them is like keeps the others from nothing.
TEST(effects, of_many_configurations) {
    workspace_t here;
    here.write("fleet/a.cfg", with_ports(maps));
    here.write("fleet/b.cfg", maps + "class-map spoiled\n\n  match cos 7\n");
    here.write("fleet/c.cfg", "");
    here.write("fleet/d.cfg", "hostname sw1\n");
    const auto run = [&](const char *format) {
        return here.run(
            {"effects", "--from", "4.1(2)", "--to", "4.1(3)", "--format", format, "fleet"});
    };
    const auto text = run("text");
    EXPECT_EQ(text.status, 1);
    EXPECT_TRUE(text.out.starts_with("fleet/a.cfg, 4.1(2) to 4.1(3):\n")) << text.out;
    EXPECT_TRUE(contains(text.out, "\n\nfleet/b.cfg, 4.1(2) to 4.1(3):\n")) << text.out;
    for (const char *told : {"fleet/b.cfg: these are the effects before the conversion",
                             "fleet/c.cfg: the configuration is empty", "fleet/d.cfg: no effects"})
        EXPECT_TRUE(contains(text.err, told)) << told << '\n' << text.err;

    const json document = json::parse(run("json").out);
    ASSERT_EQ(document["configurations"].size(), 4);
    EXPECT_EQ(document["configurations"][1]["failed"], true);
    EXPECT_TRUE(contains(document["configurations"][2]["problem"].get<std::string>(), "empty"));
    std::istringstream lines(run("jsonl").out);
    std::vector<json> parsed;
    for (std::string line; std::getline(lines, line);)
        parsed.push_back(json::parse(line));
    ASSERT_EQ(parsed.size(), 6);
    for (size_t i = 0; i < 4; i++)
        EXPECT_EQ(parsed[i + 1], document["configurations"][i]);
    EXPECT_EQ(parsed[5]["count"], 4);
}

TEST(effects, secrets_and_wrong_arguments) {
    workspace_t here;
    here.write("in.cfg",
               "class-map voice\n  match Pa55word cos 5\npolicy-map lanes\n  class voice\n"
               "    priority\nsystem qos\n  service-policy lanes\n");
    const auto open = here.run({"effects", "--from", "4.1(2)", "in.cfg"});
    EXPECT_TRUE(contains(open.out, "Pa55word")) << open.out;
    const auto masked = here.run({"effects", "--mask", "--json", "--from", "4.1(2)", "in.cfg"});
    EXPECT_EQ(masked.status, 0);
    EXPECT_FALSE(contains(masked.out, "Pa55word")) << masked.out;
    EXPECT_EQ(here.run({"effects", "in.cfg"}).status, 5); // nor has it a version line
    EXPECT_EQ(here.run({"effects", "--from", "4.1(2)"}).status, 2);
    EXPECT_EQ(here.run({"effects", "--from", "4.1(2)", "--keep-going", "in.cfg"}).status, 2);
    const auto none_there = here.run({"effects", "--json", "--from", "4.1(2)", "none.cfg"});
    EXPECT_EQ(none_there.status, 5);
    EXPECT_EQ(json::parse(none_there.out)["exit_status"], 5) << none_there.out;
    here.write("plain.cfg", "hostname sw1\n");
    const auto none = here.run({"effects", "--from", "4.1(2)", "plain.cfg"});
    EXPECT_EQ(none.status, 0);
    EXPECT_TRUE(contains(none.err, "no effects")) << none.err;
}

} // namespace
