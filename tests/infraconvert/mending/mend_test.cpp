// Fixes: that they are found, that they are right, and that none is offered that is not.

#include "mending/mend.h"

#include "meaning/compare.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using infraconvert::mending::mended_t;

const std::string untyped = "class-map video\n"
                            "  match cos 4\n"
                            "class-map voice\n"
                            "  match cos 5\n"
                            "policy-map dc\n"
                            "  class voice\n"
                            "    priority\n"
                            "  class video\n"
                            "    bandwidth percent 30\n"
                            "system qos\n"
                            "  service-policy dc\n";

const std::string typed = "class-map type qos video\n"
                          "  match cos 4\n"
                          "class-map type qos voice\n"
                          "  match cos 5\n"
                          "class-map type queuing video\n"
                          "  match qos-group 3\n"
                          "class-map type queuing voice\n"
                          "  match qos-group 2\n"
                          "policy-map type qos dc\n"
                          "  class type qos voice\n"
                          "    set qos-group 2\n"
                          "  class type qos video\n"
                          "    set qos-group 3\n"
                          "policy-map type queuing dc\n"
                          "  class type queuing voice\n"
                          "    priority\n"
                          "  class type queuing video\n"
                          "    bandwidth percent 30\n"
                          "system qos\n"
                          "  service-policy type qos input dc\n"
                          "  service-policy type queuing input dc\n"
                          "  service-policy type queuing output dc\n";

mended_t mended(const std::string &original, const std::string &result, const char *from,
                const char *to) {
    const std::string_view route[] = {from, to};
    return mending::mend({.original = original, .result = result, .route = route});
}

bool is_clean(const std::string &original, const std::string &result, const char *from,
              const char *to) {
    const std::string_view route[] = {from, to};
    return !meaning::has_errors(meaning::compare(original, result, route));
}

std::string with(std::string text, const std::string &was, const std::string &now) {
    return text.replace(text.find(was), was.size(), now);
}

struct damage_t {
    const char *was, *now;
};

// Whatever goes, moves or is crossed in a good result comes back, in both directions.
TEST(mend, brings_back_what_a_result_lost) {
    ASSERT_TRUE(is_clean(untyped, typed, "4.1(2)", "4.1(3)"));
    ASSERT_TRUE(is_clean(typed, untyped, "4.2(1)", "4.1(2)"));
    const damage_t up[] = {{"    priority\n", ""},
                           {"  service-policy type queuing output dc\n", ""},
                           {"class-map type queuing voice\n  match qos-group 2\n", ""},
                           {"    set qos-group 3\n", "    set qos-group 4\n"},
                           {"    priority\n", "    bandwidth percent 10\n"},
                           {"  match qos-group 2\n", "  match qos-group 3\n"},
                           {"  match cos 5\n", ""}};
    const damage_t down[] = {{"    priority\n", ""},
                             {"  service-policy dc\n", ""},
                             {"class-map voice\n  match cos 5\n", ""},
                             {"    priority\n", "    bandwidth percent 30\n"}};
    for (const auto &[was, now] : up) {
        const mended_t fixed = mended(untyped, with(typed, was, now), "4.1(2)", "4.1(3)");
        EXPECT_TRUE(fixed.by_hand.empty()) << was;
        EXPECT_TRUE(is_clean(untyped, fixed.result, "4.1(2)", "4.1(3)")) << fixed.result;
    }
    for (const auto &[was, now] : down) {
        const mended_t fixed = mended(typed, with(untyped, was, now), "4.2(1)", "4.1(2)");
        EXPECT_TRUE(fixed.by_hand.empty()) << was;
        EXPECT_TRUE(is_clean(typed, fixed.result, "4.2(1)", "4.1(2)")) << fixed.result;
    }
}

TEST(mend, types_an_attachment_again_and_nothing_more) {
    const std::string marking = "policy-map in\n  class voice\n    set qos-group 2\n"
                                "interface Ethernet1/1\n  service-policy input in\n";
    const std::string lost = "policy-map type qos in\n  class type qos voice\n    set qos-group 2\n"
                             "interface Ethernet1/1\n";
    const mended_t fixed = mended(untyped + marking, typed + lost, "4.1(2)", "4.1(3)");
    ASSERT_EQ(fixed.fixes.size(), 1U);
    const std::vector<std::string> lines = {"interface Ethernet1/1",
                                            "  service-policy type qos input in"};
    EXPECT_EQ(lines_of(fixed.fixes[0].commands), lines);
}

// The group has moved meanwhile: attached as it stands, voice would go into the queue of video.
TEST(mend, renumbers_what_marks_by_a_group_that_moved) {
    const std::string marking = "policy-map in\n  class voice\n    set qos-group 0\n"
                                "interface Ethernet1/1\n  service-policy input in\n";
    const std::string lost = "policy-map type qos in\n  class type qos voice\n    set qos-group 3\n"
                             "interface Ethernet1/1\n";
    const mended_t fixed = mended(untyped + marking, typed + lost, "4.1(2)", "4.1(3)");
    ASSERT_EQ(fixed.fixes.size(), 1U);
    EXPECT_NE(fixed.result.find("    set qos-group 0\n"), std::string::npos) << fixed.result;
    EXPECT_TRUE(is_clean(untyped + marking, fixed.result, "4.1(2)", "4.1(3)"));
}

TEST(mend, says_by_hand_where_the_release_has_no_way_to_say_it) {
    const std::string one_way = with(typed, "  service-policy type queuing input dc\n", "");
    const mended_t left = mended(one_way, untyped, "4.2(1)", "4.1(2)");
    ASSERT_FALSE(left.by_hand.empty());
    EXPECT_NE(left.by_hand[0].why.find("alike"), std::string::npos) << left.by_hand[0].why;
    EXPECT_EQ(left.result, untyped);
}

TEST(mend, looks_only_for_what_is_asked_for) {
    const std::string lost = with(with(typed, "    priority\n", ""), "  match cos 4\n", "");
    const std::string_view route[] = {"4.1(2)", "4.1(3)"};
    const mended_t none = mending::mend(
        {.original = untyped, .result = lost, .route = route, .convert = {}, .codes = {"IC067"}});
    EXPECT_TRUE(none.fixes.empty());
    EXPECT_FALSE(none.by_hand.empty());
}

// Lines ahead of the first stanza belong to none that could be entered.
TEST(mend, types_nothing_ahead_of_the_first_stanza) {
    const mended_t left = mended(typed, "  match protocol arp\n" + typed, "4.2(1)", "5.0(2)");
    ASSERT_EQ(left.by_hand.size(), 1U);
    EXPECT_NE(left.by_hand[0].why.find("ahead of the first stanza"), std::string::npos);
    EXPECT_TRUE(left.fixes.empty());
}

TEST(mend, tells_everything_that_a_fix_mends) {
    const std::string feature = "feature port-security\n";
    const mended_t fixed = mended(feature, feature, "4.1(3)K1(1)", "4.1(3)");
    ASSERT_EQ(fixed.fixes.size(), 1U);
    EXPECT_EQ(fixed.fixes[0].mends.size(), 2U); // one is on, the other is off
}

// A conversion that fails: another way to write the same that converts.
TEST(mend, edits_an_original_that_does_not_convert) {
    const std::string good = "hostname sw1\n" + untyped;
    const std::string spoiled = with(good, "  match cos 5\n", "  match cos 5\n\n");
    const std::string_view route[] = {"4.1(2)", "4.1(3)"};
    const mended_t fixed =
        mending::mend({.original = spoiled,
                       .result = std::nullopt,
                       .route = route,
                       .convert = [&](const std::string &text) -> std::optional<std::string> {
                           if (text == good)
                               return "hostname sw1\n" + typed;
                           return std::nullopt;
                       }});
    ASSERT_EQ(fixed.fixes.size(), 1U);
    EXPECT_EQ(fixed.original, good);
    EXPECT_EQ(fixed.result, "hostname sw1\n" + typed);
    EXPECT_TRUE(fixed.fixes[0].codes.contains("IC090"));
}

} // namespace
