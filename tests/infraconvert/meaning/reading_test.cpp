// Lines, words and releases as they are read, whatever stands there.

#include "meaning/abbreviations.h"
#include "meaning/compare.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert::meaning;

TEST(reading, takes_words_for_what_they_are_cut_from) {
    constexpr position_t first = position_t::first_line, body = position_t::body;
    const struct {
        position_t position;
        const char *line, *full;
    } rows[] = {
        {first, "sys q", "system qos"},
        {first, "system", "system"},
        {first, "sy qos", "sy qos"},
        {first, "no  feat np", "no feature npiv"},
        {first, "no", "no"},
        {first, "feature fc-p", "feature fc-port-security"},
        {first, "feature port-s", "feature port-security"},
        {first, "feature", "feature"},
        {first, "npi e", "npiv enable"},
        {first, "port-s e", "port-security enable"},
        {first, "port-s database", "port-security database"},
        {first, "fc-p\tdatabase \f\v\r", "fc-port-security database"},
        {first, "pol type qos x", "policy-map type qos x"},
        {first, "po x", "po x"},
        {first, "class-m x", "class-map x"},
        {first, "class x", "class x"},
        {first, "cont", "control-plane"},
        {first, "int e1/1", "interface e1/1"},
        {first, "vl 10", "vlan 10"},
        {first, "no vl 10", "no vlan 10"},
        {first, "vlan database", "vlan database"},
        {first, "v 10", "v 10"},
        {first, "mac ad x", "mac address-table x"},
        {first, "mac- x", "mac- x"},
        {first, "mac-a x", "mac-address-table x"},
        {first, "ser x", "ser x"},
        {body, "ser x", "service-policy x"},
        {body, "fex as 101", "fex associate 101"},
        {body, "sw mo f", "switchport mode fex-fabric"},
        {body, "sw mo", "sw mo"},
        {body, "sw mo trunk", "sw mo trunk"},
        {body, "no fco", "no fcoe"},
        {body, "vl 10", "vl 10"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(joined(full_words(row.line, row.position)), row.full) << row.line;
}

TEST(reading, stops_in_a_release_at_what_is_none) {
    const struct {
        const char *text;
        release_t read;
    } rows[] = {
        {"5.0(3)U2(1)", {5, 0, 3, 'U', 2, 1}},
        {"5.0(3a)U2(1c)", {5, 0, 3, 'U', 2, 1}},
        {"5.0(3)", {5, 0, 3}},
        {"5.0(3)u2(1)", {5, 0, 3}},
        {"5.0(3)U", {5, 0, 3, 'U'}},
        {"5.0", {5, 0}},
        {"5.0K2(1)", {5, 0}},
        {"5.(3)", {5}},
        {"5.K", {5}},
        {"5.0(3K2", {5, 0, 3}},
        {"K5.0(3)", {}},
        {"12345678901.0", {123456789}},
        {"", {}},
    };
    for (const auto &[text, read] : rows) {
        const release_t is = read_release(text);
        EXPECT_EQ(
            std::tie(is.major, is.minor, is.patch, is.letter, is.number, is.build),
            std::tie(read.major, read.minor, read.patch, read.letter, read.number, read.build))
            << text;
    }
}

// Which spelling a release reads: the trains of 4.1(3) and 5.0(3) count by their letters.
TEST(reading, knows_the_dialects_of_trains) {
    const struct {
        const char *release;
        bool npiv_feature, control_plane;
        fc_security_t security;
    } rows[] = {
        {"4.1(2)K2(1)", false, false, fc_security_t::enable},
        {"4.1(3)", false, false, fc_security_t::enable},
        {"4.1(3)K1(0)", false, false, fc_security_t::enable},
        {"4.1(3)K1(1)", false, false, fc_security_t::feature},
        {"4.1(3)U2(1)", false, false, fc_security_t::enable},
        {"4.1(3)K2(0)", false, false, fc_security_t::feature},
        {"4.1(3)K2(1)", true, false, fc_security_t::fc_feature},
        {"4.1(3)K3(0)", true, false, fc_security_t::fc_feature},
        {"4.1(4)", true, false, fc_security_t::fc_feature},
        {"5.0(3)U1(9)", true, false, fc_security_t::fc_feature},
        {"5.0(3)U2(0)", true, true, fc_security_t::fc_feature},
        {"5.0(3)K2(1)", true, false, fc_security_t::fc_feature},
        {"5.0(4)", true, true, fc_security_t::fc_feature},
    };
    for (const auto &row : rows) {
        const release_t release = read_release(row.release);
        const dialect_t reads = dialect_of(release, release);
        EXPECT_EQ(reads.npiv_feature, row.npiv_feature) << row.release;
        EXPECT_EQ(reads.control_plane, row.control_plane) << row.release;
        EXPECT_EQ(reads.fc_security, row.security) << row.release;
    }
}

TEST(reading, finds_the_line_that_names_another_release) {
    const struct {
        const char *text;
        uint32_t line;
    } rows[] = {
        {"! x\nhostname sw1\nversion 4.1(2)\n", 3},
        {"version 5.0(2)\n", 0},
        {"version 5.0(2)N1(1)\n", 0},
        {"version\nversion 5.0(3)\n", 2},
        {"version 5.0(2)\nversion 4.1(2)\n", 0},
        {"version x\n", 0},
        {"hostname 4.1(2)\n", 0},
        {"  version 4.1(2)\n", 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(other_version_line(row.text, "5.0(2)"), row.line) << row.text;
}

} // namespace
