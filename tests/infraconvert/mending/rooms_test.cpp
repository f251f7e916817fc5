// Releases before 4.1(3) have one policy-map for each place: what finds room there with other
// lines, and the reasons where nothing does.

#include "mending/mend.h"

#include "meaning/compare.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using infraconvert::mending::mended_t;

mended_t mended(const std::string &original, const std::string &result, const char *from,
                const char *to) {
    const std::string_view route[] = {from, to};
    return mending::mend({.original = original, .result = result, .route = route});
}

void expect_mended(const std::string &original, const std::string &result, const char *from,
                   const char *to, const std::string &line) {
    const std::string_view route[] = {from, to};
    ASSERT_TRUE(meaning::has_errors(meaning::original_t(original, from).compare(result, route)));
    const mended_t fixed = mended(original, result, from, to);
    for (const auto &left : fixed.by_hand)
        ADD_FAILURE() << left.difference.words << ": " << left.why;
    EXPECT_NE(fixed.result.find(line), std::string::npos) << fixed.result;
    EXPECT_FALSE(
        meaning::has_errors(meaning::original_t(original, from).compare(fixed.result, route)))
        << fixed.result;
}

const std::string classes = "class-map type qos voice\n  match cos 5\n"
                            "class-map type qos video\n  match cos 4\n";
const std::string untyped_classes = "class-map voice\n  match cos 5\n"
                                    "class-map video\n  match cos 4\n";

// An attachment without an effect keeps the name of its policy-map; the effect takes another.
TEST(rooms, give_an_effect_a_policy_map_of_its_own) {
    const std::string shared = classes +
                               "policy-map type qos lanes\n"
                               "policy-map type queuing lanes\n"
                               "  class type queuing class-default\n    bandwidth percent 50\n"
                               "system qos\n"
                               "  service-policy type queuing input lanes\n"
                               "  service-policy type queuing output lanes\n"
                               "interface Ethernet1/1\n  service-policy type qos input lanes\n";
    expect_mended(shared,
                  untyped_classes + "policy-map lanes\n  class class-default\n"
                                    "    bandwidth percent 50\n"
                                    "system qos\n  service-policy lanes\ninterface Ethernet1/1\n",
                  "5.0(3)", "4.1(2)", "  service-policy lanes-system\n");
}

// The queue that marked traffic joins may be one of which no policy-map says anything more.
TEST(rooms, have_a_class_for_a_queue_that_traffic_joins) {
    const std::string original = classes +
                                 "policy-map type qos sorting\n"
                                 "  class type qos video\n    set qos-group 3\n"
                                 "policy-map type qos port\n"
                                 "  class type qos voice\n    set qos-group 3\n"
                                 "policy-map type queuing lanes\n"
                                 "  class type queuing class-default\n    bandwidth percent 50\n"
                                 "system qos\n  service-policy type qos input sorting\n"
                                 "  service-policy type queuing input lanes\n"
                                 "  service-policy type queuing output lanes\n"
                                 "interface Ethernet1/1\n  service-policy type qos input port\n";
    expect_mended(original,
                  untyped_classes + "policy-map sorting\npolicy-map port\npolicy-map lanes\n"
                                    "  class class-default\n    bandwidth percent 50\n"
                                    "system qos\n  service-policy lanes\ninterface Ethernet1/1\n",
                  "4.2(1)", "4.0(1)", "  class video\n    set qos-group 3\n");
}

// The first line of a class-map and the effect of its class are repaired together.
TEST(rooms, are_made_together_with_a_readable_class_map) {
    const std::string original = "class-map type qos match-any voice\n  match cos 5\n"
                                 "class-map type queuing voice\n  match qos-group 1\n"
                                 "policy-map type queuing lanes\n"
                                 "  class type queuing voice\n    bandwidth percent 22\n"
                                 "interface Ethernet1/1\n"
                                 "  service-policy type queuing input lanes\n";
    expect_mended(original,
                  "class-map match-any voice\n  match cos 5\nclass-map voice\n"
                  "policy-map lanes\n  class voice\n    bandwidth percent 22\n"
                  "interface Ethernet1/1\n  service-policy input lanes\n",
                  "5.0(3)", "4.1(2)", "  class class-fcoe\n    bandwidth percent 22\n");
}

// Maps that stayed in the old form are all written anew, also those that matched nothing but
// groups.
TEST(rooms, are_made_anew_where_the_maps_stayed_as_they_were) {
    const std::string original = classes + "class-map type queuing lane\n  match qos-group 2\n"
                                           "policy-map type network-qos sizes\n"
                                           "  class type network-qos class-fcoe\n    mtu 2158\n"
                                           "system qos\n  service-policy type network-qos sizes\n";
    expect_mended(original, original, "4.1(3)", "4.0(1)", "class-map lane\n");
}

// What is said in one direction only stays as the conversion made it; the rest comes back.
TEST(rooms, are_found_beside_what_cannot_be_said) {
    const std::string original = classes + "class-map type queuing voice\n  match qos-group 2\n"
                                           "policy-map type qos sorting\n"
                                           "  class type qos voice\n    set qos-group 2\n"
                                           "policy-map type queuing lanes\n"
                                           "  class type queuing voice\n    priority\n"
                                           "policy-map type queuing ports\n"
                                           "policy-map type network-qos ports\n"
                                           "  class type network-qos class-default\n    mtu 9000\n"
                                           "system qos\n  service-policy type qos input sorting\n"
                                           "  service-policy type queuing input lanes\n"
                                           "  service-policy type network-qos ports\n";
    const std::string result = untyped_classes +
                               "policy-map sorting\npolicy-map lanes\n  class voice\n"
                               "    priority\npolicy-map ports\n  class class-default\n"
                               "    mtu 9000\nsystem qos\n  service-policy lanes\n";
    const mended_t fixed = mended(original, result, "4.2(1)", "4.1(2)");
    ASSERT_EQ(fixed.by_hand.size(), 1U) << fixed.result;
    EXPECT_NE(fixed.by_hand[0].why.find("alike"), std::string::npos) << fixed.by_hand[0].why;
}

TEST(rooms, have_police_beside_the_classification_from_types_on) {
    const std::string untyped = untyped_classes + "policy-map lanes\n  class voice\n    priority\n"
                                                  "    police cir 5 mbps\n";
    const std::string typed = classes + "class-map type queuing voice\n  match qos-group 2\n"
                                        "policy-map type qos lanes\n"
                                        "  class type qos voice\n    set qos-group 2\n"
                                        "policy-map type queuing lanes\n"
                                        "  class type queuing voice\n    priority\n";
    expect_mended(untyped + "system qos\n  service-policy lanes\n",
                  typed + "system qos\n  service-policy type qos input lanes\n"
                          "  service-policy type queuing input lanes\n"
                          "  service-policy type queuing output lanes\n",
                  "4.0(1)", "4.2(1)", "    set qos-group 2\n    police cir 5 mbps\n");
    const mended_t left =
        mended(untyped + "interface Ethernet1/1\n  service-policy output lanes\n",
               typed + "interface Ethernet1/1\n  service-policy type queuing output lanes\n",
               "4.0(1)", "4.2(1)");
    ASSERT_FALSE(left.by_hand.empty());
    EXPECT_NE(left.by_hand[0].why.find("attached for input only"), std::string::npos)
        << left.by_hand[0].why;
}

// Only the way back of what is scheduled in one direction cannot be said: at other places it can.
TEST(rooms, are_found_at_places_beside_the_system) {
    const std::string original = classes +
                                 "class-map type queuing voice\n  match qos-group 2\n"
                                 "policy-map type queuing lanes\n"
                                 "  class type queuing voice\n    priority\n"
                                 "  class type queuing class-fcoe\n    bandwidth percent 5\n"
                                 "system qos\n  service-policy type queuing output lanes\n"
                                 "interface Ethernet1/1\n"
                                 "  service-policy type queuing input lanes\n";
    const std::string result = untyped_classes +
                               "policy-map lanes\n  class voice\n    priority\n"
                               "  class class-fcoe\n    bandwidth percent 5\n"
                               "system qos\n  service-policy lanes\n"
                               "interface Ethernet1/1\n  service-policy input lanes\n";
    const mended_t fixed = mended(original, result, "5.0(2)", "4.0(1)");
    ASSERT_EQ(fixed.by_hand.size(), 1U) << fixed.result;
    EXPECT_NE(fixed.by_hand[0].why.find("alike"), std::string::npos) << fixed.by_hand[0].why;
    EXPECT_EQ(fixed.by_hand[0].difference.rows.size(), 1U) << fixed.by_hand[0].difference.words;
}

struct no_room_t {
    std::string original, result, why;
};

TEST(rooms, are_missing_for_reasons_that_are_told) {
    const std::string sorting = classes + "policy-map type qos sorting\n  class type qos voice\n"
                                          "    set qos-group 2\n";
    const std::string bare = "policy-map type queuing a\npolicy-map type qos b\n";
    const no_room_t cases[] = {
        {bare + "interface Ethernet1/1\n  service-policy type queuing input a\n"
                "  service-policy type qos input b\n",
         "policy-map a\npolicy-map b\ninterface Ethernet1/1\n  service-policy input a\n",
         "before 4.1(3) interface Ethernet1/1 input takes one policy-map, and the original has "
         "both b and a there, without an effect"},
        {"policy-map type queuing a\npolicy-map type network-qos a\n"
         "  class type network-qos class-default\n    mtu 9000\n"
         "interface Ethernet1/1\n  service-policy type queuing output a\n",
         "policy-map a\n  class class-default\n    mtu 9000\n"
         "interface Ethernet1/1\n  service-policy output a\n",
         "before 4.1(3) policy-map a is one for all its types, and attached to interface "
         "Ethernet1/1 output it would say mtu 9000 for class-default"},
        {bare + "policy-map type network-qos c\n  class type network-qos class-fcoe\n"
                "    pause no-drop\nsystem qos\n  service-policy type queuing input a\n"
                "  service-policy type network-qos c\n"
                "interface Ethernet1/1\n  service-policy type queuing input a\n",
         "policy-map a\npolicy-map b\npolicy-map c\n  class class-fcoe\n    pause no-drop\n"
         "system qos\n  service-policy a\ninterface Ethernet1/1\n  service-policy input a\n",
         "before 4.1(3) the system and interface Ethernet1/1 input have one policy-map, a, which "
         "is attached to both in the original, and only the system has pause no-drop for "
         "class-fcoe"},
        {sorting + "policy-map type network-qos c\n  class type network-qos class-all-flood\n"
                   "    mtu 9000\npolicy-map type qos d\n  class type qos class-all-flood\n"
                   "    set qos-group 4\nsystem qos\n  service-policy type qos input sorting\n"
                   "  service-policy type network-qos c\n"
                   "interface Ethernet1/1\n  service-policy type qos input d\n",
         untyped_classes + "policy-map sorting\npolicy-map d\npolicy-map c\n"
                           "  class class-all-flood\n    mtu 9000\n"
                           "system qos\n  service-policy c\ninterface Ethernet1/1\n",
         "before 4.1(3) what is marked goes with its own class on the system, and class-all-flood "
         "has mtu 9000 there"}};
    for (const no_room_t &each : cases) {
        const mended_t left = mended(each.original, each.result, "4.2(1)", "4.1(2)");
        ASSERT_FALSE(left.by_hand.empty()) << left.result;
        EXPECT_EQ(left.by_hand[0].why, each.why);
    }
}

} // namespace
