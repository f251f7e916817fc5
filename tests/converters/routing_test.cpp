// Which rewrite a pair of releases calls for, as seen in the file.

#include "support/services.h"

#include <gtest/gtest.h>
#include <random>

namespace {

struct row_t {
    const char *service, *from, *to;
    const char *before, *after; // null: nothing runs, the file is not touched
};

// A pair of releases that count as the same ends before the load.
bool was_loaded(const support::conversion_t &result) {
    return result.log.find("Reading ASCII file") != std::string::npos;
}

const row_t rows[] = {
    {"npiv", "4.1(2)", "4.1(3)K2(1)", "npiv enable\n", "feature npiv\n"},
    {"npiv", "4.0(1)", "5.0(2)", " x npiv enabled\n", " x feature npivd\n"},
    {"npiv", "4.1(3)K1(1)", "4.1(3)K2(1)", "npiv enable\n", "npiv enable\n"},
    {"npiv", "4.1(2)", "4.1(3)K1(1)", "npiv enable\n", "npiv enable\n"},
    {"npiv", "4.2(1)", "4.1(2)", "feature npiv\n", "npiv enable\n"},
    {"npiv", "4.1(3)K2(1)", "4.1(3)K1(1)", "feature npiv\n", "feature npiv\n"},
    {"npiv", "4.1(3)K3(1)", "4.0(1)", "feature npiv\n", "npiv enable\n"},
    {"npiv", "4.1(3)", "4.1(3)", "npiv enable\n", nullptr},
    {"npiv", "4.1(3)", "4.1(3)x", "npiv enable\n", nullptr},
    {"fcportsec", "4.1(2)", "4.1(3)K2(1)", "port-security enable\nport-security a\n",
     "feature fc-port-security\nfc-port-security a\n"},
    {"fcportsec", "4.1(3)K1(1)", "4.2(1)", "feature port-security\n", "feature fc-port-security\n"},
    {"fcportsec", "4.1(2)", "4.2(1)", "fc-port-security\n", "fc-fc-port-security\n"},
    {"fcportsec", "4.2(1)", "4.1(3)K1(1)", "feature fc-port-security\n", "feature port-security\n"},
    {"fcportsec", "4.1(3)K2(1)", "4.1(2)", "feature fc-port-security\n", "port-security enable\n"},
    {"fcportsec", "4.2(1)", "4.1(3)", "feature fc-port-security\n", "port-security enable\n"},
    {"fcportsec", "4.1(3)K2(1)", "4.1(3)K3(1)", "port-security\n", "port-security\n"},
    {"fcportsec", "4.1(3)K1(1)", "4.1(2)", "feature port-security\n", "feature port-security\n"},
    {"fwm", "4.2(1)", "4.1(3)", "mac address-table a\nmac address-table b\n mac address-table c\n",
     "mac address-table a\nmac-address-table b\n mac address-table c\n"},
    {"fwm", "5.0(2)", "3.1(1)", "\nmac address-table b\n", "\nmac-address-table b\n"},
    {"fwm", "4.2(1)", "4.1(2)", "\nmac address-table b\n", "\nmac address-table b\n"},
    {"fwm", "4.0(1)", "4.1(3)", "\nmac address-table b\n", "\nmac address-table b\n"},
    {"fwm", "4.1(3)", "4.2(1)", "\nmac-address-table b\n", "\nmac-address-table b\n"},
    {"fwm", "4.2(1)K1(1)", "4.2(1)K2(1)", "\nmac address-table b\n", nullptr},
    {"satmgr", "4.2(1)", "5.0(3)",
     "interface a\n  fex associate 1\n  switchport mode fex-fabric\n  no shutdown\n",
     "interface a\n  switchport mode fex-fabric\n  fex associate 1\n  no shutdown\n"},
    {"satmgr", "5.0(2)", "5.0(3u)", "interface a\n  fex associate 1\n  switchport mode fex-fabric",
     "interface a\n  switchport mode fex-fabric\n  fex associate 1\n"},
    {"satmgr", "5.0(3)", "5.1(1)", "interface a\n  fex associate 1\n  switchport mode fex-fabric\n",
     "interface a\n  fex associate 1\n  switchport mode fex-fabric\n"},
    {"satmgr", "5.0(3)K1(1)", "5.0(3)K2(1)", "interface a\n", "interface a\n"},
    {"satmgr", "5.0(3u)K1(1u)", "5.0(3)K1(2)", "interface a\n", nullptr},
    {"assoc", "4.1(3)", "5.0(2)", "vlan 10-11\n  fcoe\n  name a\n",
     "vlan  10\n  fcoe\nvlan  11\n  fcoe\nvlan 10-11\n  name a\n"},
    {"assoc", "4.1(3)", "5.0(2)", "vlan 9,19-20\n  fcoe\n",
     "vlan  9\n  fcoe\nvlan  19\n  fcoe\nvlan  20\n  fcoe\nvlan 9,19-20\n"},
    {"assoc", "4.1(3)", "5.0(2)", "vlan 5\nx y\n  fcoe\n", "vlan  5\n  fcoe\nvlan 5\nx y\n"},
    {"assoc", "4.2(1)", "5.0(2)", "vlan 5\n  fcoe\n", nullptr},
    {"assoc", "4.1(3)", "4.2(1)", "vlan 5\n  fcoe\n", nullptr},
    {"qos", "4.1(3)", "4.0(1)", "class-map c\n", "class-map c\n"},
    {"qos", "4.0(1)", "4.1(4)", "class-map c\n", "class-map c\n"},
    {"qos", "4.2(1)", "5.0(2)", "class-map c\n", "class-map c\n"},
    {"qos", "5.0(2)", "4.2(1)", "class-map c\n", "class-map c\n"},
    {"qos", "4.0(1)", "4.2(1)", "\nclass-map c\n", "\nclass-map type qos c\n"},
    {"qos", "5.0(3)U1(1)", "5.0(3)U2(1)", "class-map c\n", nullptr},
    {"qos", "5.0(3)U2(1)", "5.0(3)U3(1)", "class-map c\n", nullptr},
    {"qos", "5.0(3)U2(1)", "5.0(3)N1(1)", "class-map c\n", nullptr},
    {"qos", "5.0(3)N2(1)", "5.0(3)U1(1)", "class-map c\n", nullptr},
    {"qos", "5.0(3)U2(1)", "5.0(3)U1(1)", "class-map type control-plane c\n  match\n", "  match\n"},
    {"qos", "5.0(3)U2(1)", "5.0(3)U1(1)",
     "clclass-map type control-plane c\nass-map type control-plane d\n", ""},
    {"qos", "5.0(3)U2(1)", "5.0(3)U1(1)",
     "claclass-map type control-plane c\nss-map type control-plane d\n",
     "class-map type control-plane d\n"},
};

} // namespace

TEST(routing, each_pair_runs_its_rewrite) {
    for (const row_t &row : rows) {
        const std::string label =
            std::string(row.service) + ' ' + row.from + " to " + row.to + ": " + row.before;
        const auto result =
            support::convert(support::service_named(row.service), row.before, row.from, row.to);
        EXPECT_EQ(result.status, 0) << label;
        EXPECT_EQ(was_loaded(result), row.after != nullptr) << label;
        EXPECT_EQ(result.file, row.after ? row.after : row.before) << label;
    }
}

TEST(routing, the_association_converter_tells_how_it_ended) {
    const struct {
        const char *from, *to, *last;
    } rows[] = {{"4.1(3)", "5.0(2)",
                 "ASCII file ...\nvlan 5\n\xFF"
                 "Freeing block of memory at <ptr>\nExit ascii convertion \n"},
                {"4.1(3)", "4.2(1)", "ascii convertion not requred\n"},
                {nullptr, "5.0(2)", "release missing\n"}};
    for (const auto &row : rows) {
        const auto result =
            support::convert(support::service_named("assoc"), "vlan 5\n", row.from, row.to);
        EXPECT_TRUE(result.log.ends_with(row.last)) << result.log;
    }
}

// A line that ends at a zero byte, or is too long, stays where it is; the end marker only ends one.
TEST(routing, fabric_lines_that_cannot_be_moved) {
    using namespace std::string_literals;
    const std::string fex = "interface a\n  fex associate 1", mode = "  switchport mode fex-fabric";
    const struct {
        std::string before, after;
    } texts[] = {
        {fex + "\n" + mode + "\0\n"s, fex + "\n" + mode + "\0\n"s},
        {fex + "\n" + mode + std::string(40, ' ') + "x\n",
         fex + "\n" + mode + std::string(40, ' ') + "x\n"},
        {fex + "\n" + mode + "\xFF\n", "interface a\n" + mode + "\n  fex associate 1\n\n"},
    };
    for (const auto &row : texts) {
        const auto result =
            support::convert(support::service_named("satmgr"), row.before, "4.2(1)", "5.0(3)");
        EXPECT_EQ(result.status, 0) << row.before;
        EXPECT_EQ(result.file, row.after) << row.before;
    }
}

// What is moved is first copied, and the copy holds so much.
TEST(routing, a_fabric_line_of_62_bytes_is_moved_and_a_longer_one_stays) {
    const std::string mode = "  switchport mode fex-fabric\n";
    for (const size_t length : {62, 63}) {
        const std::string words = "fex associate 1 ";
        const std::string fex = "  " + words + std::string(length - words.size(), 'x') + '\n';
        const auto result = support::convert(support::service_named("satmgr"),
                                             "interface a\n" + fex + mode, "4.2(1)", "5.0(3)");
        EXPECT_EQ(result.file, "interface a\n" + (length == 62 ? mode + fex : fex + mode));
    }
}

// The stanzas of VLANs 46 to 107 have a thousand bytes.
TEST(routing, vlan_stanzas_are_inserted_when_they_are_more_than_a_thousand_bytes) {
    const auto result = support::convert(support::service_named("assoc"), "vlan 46-109\n  fcoe\n",
                                         "4.1(3)", "5.0(2)");
    EXPECT_NE(result.log.find("To write size [1017] total[1017]"), result.log.npos) << result.log;
    EXPECT_NE(result.log.find("To write size [17] total[1034]"), result.log.npos) << result.log;
}

namespace {

// A text of the words that the converters look for, in random order and layout.
std::string random_text(std::mt19937 &random) {
    static const char *const words[] = {
        "port-security", "npiv enable",   "mac address-table",  "vlan 10-20,30",
        "  fcoe",        "interface a",   "  fex associate 1",  "  switchport mode fex-fabric",
        "class-map c1",  "  match cos 2", "policy-map p1",      "  class c1",
        "    mtu 9000",  "system qos",    "  service-policy p1"};
    std::string text;
    const size_t lines = 1 + random() % 40;
    for (size_t i = 0; i < lines; i++) {
        text += words[random() % std::size(words)];
        text += random() % 8 ? "\n" : " ";
    }
    return text;
}

} // namespace

TEST(routing, a_pair_without_a_rule_gives_the_file_back) {
    std::mt19937 random(1);
    for (int i = 0; i < 60; i++) {
        const std::string text = random_text(random);
        for (const auto &service : support::services()) {
            const auto result = support::convert(service, text, "6.0(1)", "6.0(2)", 0);
            EXPECT_EQ(result.status, 0) << service.name;
            EXPECT_EQ(result.file, text) << service.name;
        }
    }
}

// A save gathers short runs and writes long ones by themselves.
TEST(routing, a_large_text_with_few_edits) {
    const std::string filler(200'000, '\n');
    const auto up =
        support::convert(support::service_named("npiv"),
                         "npiv enable\n" + filler + "npiv enable\n" + filler, "4.0(1)", "5.0(1)");
    EXPECT_EQ(up.file, "feature npiv\n" + filler + "feature npiv\n" + filler);
    EXPECT_EQ(up.process.output, up.file);
}

TEST(routing, up_and_down_again_gives_old_forms_back) {
    std::mt19937 random(2);
    for (int i = 0; i < 60; i++) {
        const std::string text = random_text(random);
        for (const char *name : {"npiv", "fcportsec"}) {
            const auto &service = support::service_named(name);
            const auto up = support::convert(service, text, "4.0(1)", "5.0(1)", 0);
            const auto down = support::convert(service, up.file, "5.0(1)", "4.0(1)", 0);
            EXPECT_EQ(down.file, text) << name;
        }
    }
}
