// What the VLAN-FCoE association converter asks before it converts, its lists, and that it does the
// same whether or not it tells.

#include "assoc/assoc_engine.h"
#include "assoc/assoc_vlan_list.h"
#include "engine/loaded.h"
#include "support/processor_time.h"

#include "include/libinfraconvertascii.h"

#include <random>

TEST(vlans, what_is_missing_is_no_reason_to_convert) {
    EXPECT_FALSE(assoc_conversion_needed(nullptr, "5.0(2)"));
    EXPECT_FALSE(assoc_conversion_needed("4.1(3)", nullptr));
    EXPECT_EQ(assoc_infra_convert_startup("/none", "package", nullptr, "4.1(3)"), engine::failure);
    load(assoc_engine, "vlan 1\n");
    assoc_int_multi_range_t ranges;
    EXPECT_FALSE(assoc_get_vlan_mrange(8, ranges));
}

TEST(vlans, a_list_has_an_end) {
    std::string longest = "vlan 1";
    for (int i = 0; i < 600; i++)
        longest += ",1";
    const struct {
        std::string line;
        size_t ranges;
    } rows[] = {{"vlan 7,", 1}, {"vlan 7,8-", 2}, {longest, 512}};
    for (const auto &row : rows) {
        load(assoc_engine, row.line + "\n");
        assoc_int_multi_range_t ranges;
        EXPECT_TRUE(assoc_get_vlan_mrange(0, ranges));
        EXPECT_EQ(ranges.size(), row.ranges) << row.line;
    }
}

namespace {

std::string random_text(std::mt19937 &random) {
    static const std::string lines[] = {"vlan 10-12",
                                        "vlan 5,7",
                                        "  fcoe",
                                        "  fcoe ",
                                        "  name vlan 7",
                                        "x y",
                                        "vlan 1 vlan",
                                        "vlan " + std::string(2100, 'v') + "vlan 3",
                                        "  name vlan 2" + std::string(5000, ' '),
                                        "",
                                        std::string("  a\0b", 5)};
    std::string text;
    const size_t count = 1 + random() % 20;
    for (size_t i = 0; i < count; i++)
        text += lines[random() % std::size(lines)] + (random() % 8 ? "\n" : " ");
    return text;
}

std::string converted(const std::string &text, bool logs_open) {
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/ascii/system.cfg";
    support::write_file(file, text);
    const auto outcome = support::run_in_process(
        [&] {
            return static_cast<int>(
                assoc_infra_convert_startup(place.path().c_str(), "package", "5.0(2)", "4.1(3)"));
        },
        logs_open);
    EXPECT_FALSE(outcome.crashed);
    return std::to_string(outcome.status) + support::read_file(file);
}

} // namespace

// Without a log it does not look again at lines that it has seen.
TEST(vlans, are_converted_the_same_without_a_log) {
    std::mt19937 random(1);
    for (int i = 0; i < 150; i++) {
        const std::string text = random_text(random);
        ASSERT_EQ(converted(text, false), converted(text, true)) << text;
    }
}

namespace {

// Each line mentions a VLAN, and is therefore looked at as if it began a stanza.
double seconds_for(size_t lines) {
    std::string text = "vlan 1\n";
    while (lines-- > 0)
        text += "  name of vlan 7\n";
    const double start = support::processor_seconds();
    EXPECT_EQ(converted(text, false), '0' + text);
    return support::processor_seconds() - start;
}

} // namespace

TEST(vlans, eight_times_the_lines_take_about_eight_times_as_long) {
    const double few = seconds_for(2500), many = seconds_for(20'000);
    EXPECT_LT(many, 20 * few + 0.05) << few;
}
