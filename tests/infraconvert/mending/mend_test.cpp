// Fixes: that they are found, that they are right, and that none is offered that is not.

#include "mending/mend.h"

#include "meaning/compare.h"

#include <ctime>
#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using infraconvert::mending::fix_place_t;
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
    return !meaning::has_errors(meaning::original_t(original, from).compare(result, route));
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

// The policy-map is attached nowhere any more: its class can have its class-map again or can go.
TEST(mend, leaves_the_choice_between_repairs_that_make_different_switches) {
    const std::string original = "class-map type control-plane match-any arp\n"
                                 "  match protocol arp\n"
                                 "policy-map type control-plane spare\n"
                                 "  class arp\n    police pps 20\n"
                                 "control-plane\n  service-policy input spare\n";
    const std::string converted = "class-map type control-plane match-any arp\n"
                                  "policy-map spare\n  class arp\n    police pps 20\n"
                                  "control-plane\n  service-policy input spare\n";
    const mended_t left = mended(original, converted, "5.0(3)U2(1)", "4.1(2)");
    EXPECT_NE(left.result.find("policy-map spare\n  class arp\n"), std::string::npos);
    EXPECT_EQ(left.result.find("class-map arp\n"), std::string::npos);
    const auto orphan =
        std::find_if(left.by_hand.begin(), left.by_hand.end(),
                     [](const auto &each) { return each.difference.code == "IC010"; });
    ASSERT_NE(orphan, left.by_hand.end());
    ASSERT_EQ(orphan->choices.size(), 2U) << orphan->why;
    const std::vector<std::string> made = {"class-map arp", "  match protocol arp"},
                                   gone = {"policy-map spare", "  no class arp"};
    EXPECT_EQ(lines_of(orphan->choices[0]), made);
    EXPECT_EQ(lines_of(orphan->choices[1]), gone);
}

// One difference tells of all maps that stayed in the old form: it must not come to tell of more.
TEST(mend, types_nothing_that_the_release_does_not_read) {
    const std::string left = "policy-map lab\n  class v\n    priority\n";
    const mended_t fixed =
        mended(left + "class-map v\n  match cos 5\n",
               left + "class-map type qos v\n  match cos 5\n", "4.1(2)", "4.1(3)");
    EXPECT_EQ(("\n" + fixed.result).find("\nclass-map v"), std::string::npos) << fixed.result;
}

TEST(mend, looks_only_for_what_is_asked_for) {
    const std::string lost = with(with(typed, "    priority\n", ""), "  match cos 4\n", "");
    const std::string_view route[] = {"4.1(2)", "4.1(3)"};
    const mended_t none = mending::mend(
        {.original = untyped, .result = lost, .route = route, .convert = {}, .codes = {"IC067"}});
    EXPECT_TRUE(none.fixes.empty());
    EXPECT_FALSE(none.by_hand.empty());
}

std::vector<std::string> only_fix(const mended_t &fixed) {
    EXPECT_EQ(fixed.fixes.size(), 1U);
    EXPECT_TRUE(fixed.by_hand.empty());
    return fixed.fixes.empty() ? std::vector<std::string>() : lines_of(fixed.fixes[0].commands);
}

using lines_t = std::vector<std::string>;

// Whatever the way on which a fix is found, only what is missing is typed.
TEST(mend, types_the_fewest_lines) {
    const std::string passed_over =
        typed.substr(0, typed.find("system qos")) + "system qos\n  service-policy dc\n";
    EXPECT_EQ(only_fix(mended(untyped, passed_over, "4.1(2)", "4.1(3)")),
              (lines_t{"system qos", "  no service-policy dc", "  service-policy type qos input dc",
                       "  service-policy type queuing input dc",
                       "  service-policy type queuing output dc"}));
    const std::string misplaced =
        with(typed, "policy-map type queuing dc\n  class type queuing voice\n    priority\n",
             "policy-map type network-qos dc\n  class type network-qos voice\n    priority\n"
             "policy-map type queuing dc\n  class type queuing voice\n") +
        "class-map type network-qos voice\n  match qos-group 2\n";
    const lines_t moved = only_fix(mended(untyped, misplaced, "4.1(2)", "4.1(3)"));
    EXPECT_EQ(std::count(moved.begin(), moved.end(), "    priority"), 1);
    EXPECT_LE(moved.size(), 6U);
}

// Two classes for the same packets: the first of them gets the packets.
const std::string overlapping = "class-map type qos a\n  match cos 1\nclass-map type qos b\n"
                                "  match cos 1\npolicy-map type qos s\n  class a\n"
                                "    set qos-group 2\n  class b\n    set qos-group 3\n"
                                "system qos\n  service-policy type qos input s\n";

TEST(mend, puts_classes_back_in_their_order) {
    const std::string turned =
        with(with(overlapping, "  class a\n    set qos-group 2\n", ""), "    set qos-group 3\n",
             "    set qos-group 3\n  class a\n    set qos-group 2\n");
    const mended_t fixed = mended(overlapping, turned, "5.0(2)", "5.0(3)");
    EXPECT_TRUE(fixed.by_hand.empty());
    EXPECT_LT(fixed.result.find("set qos-group 2"), fixed.result.find("set qos-group 3"))
        << fixed.result;
}

TEST(mend, makes_no_class_that_has_no_class_map) {
    const std::string original = "class-map type queuing a\n  match qos-group 2\n"
                                 "policy-map type qos p\n  class type qos a\n"
                                 "policy-map type queuing p\n  class type queuing a\n"
                                 "    priority\nsystem qos\n"
                                 "  service-policy type queuing input p\n";
    const std::string result = "class-map a\npolicy-map p\n  class a\n    priority\n"
                               "system qos\n  service-policy p\n";
    const mended_t left = mended(original, result, "5.0(2)", "4.1(2)");
    EXPECT_NE(left.result.find("class-map a\n"), std::string::npos) << left.result;
    ASSERT_FALSE(left.by_hand.empty());
    EXPECT_NE(left.by_hand[0].why.find("gets no packets"), std::string::npos)
        << left.by_hand[0].why;
}

// A number that traffic goes into by itself is kept free of the system's classes.
TEST(mend, classifies_and_schedules_at_an_interface_in_one_group) {
    const std::string original = "class-map a\n  match cos 2\nclass-map b\n  match cos 3\n"
                                 "policy-map p\n  class a\n    set qos-group 4\n"
                                 "    priority\ninterface Ethernet1/1\n"
                                 "  service-policy input p\n";
    const std::string result = "class-map type qos a\n  match cos 2\nclass-map type qos b\n"
                               "  match cos 3\nclass-map type queuing a\n\n"
                               "policy-map type qos p\npolicy-map type queuing p\n"
                               "  class type queuing a\n    priority\ninterface Ethernet1/1\n"
                               "  service-policy type queuing input p\n";
    const lines_t lines = only_fix(mended(original, result, "4.1(2)", "5.0(2)"));
    EXPECT_EQ(lines, (lines_t{"class-map type queuing a", "  match qos-group 4",
                              "policy-map type qos p", "  class type qos a", "    set qos-group 4",
                              "interface Ethernet1/1", "  service-policy type qos input p"}));
}

// Lines ahead of the first stanza belong to none that could be entered.
TEST(mend, types_nothing_ahead_of_the_first_stanza) {
    const mended_t left = mended(typed, "  match protocol arp\n" + typed, "4.2(1)", "5.0(2)");
    ASSERT_EQ(left.by_hand.size(), 1U);
    EXPECT_NE(left.by_hand[0].why.find("ahead of the first stanza"), std::string::npos);
    EXPECT_TRUE(left.fixes.empty());
}

// With the first line of a stanza go those below: typed one by one they would make it again.
TEST(mend, removes_a_stanza_as_a_whole) {
    const std::string body = "port-security database vsan 3\n  pwwn 1\n";
    const mended_t fixed = mended("fc-" + body, "fc-fc-" + body, "4.1(3)K1(1)", "4.2(1)");
    EXPECT_TRUE(fixed.by_hand.empty());
    EXPECT_EQ(fixed.result, "fc-" + body);
}

TEST(mend, says_why_lines_of_the_original_have_no_place) {
    const std::string lane = "policy-map lab\n  class v\n    priority\n";
    const std::string marking = "policy-map ports\n  class video\n    priority\n"
                                "  class voice\n    bandwidth percent 8\n"
                                "    set qos-group 2\n"
                                "interface Ethernet1/1\n  service-policy output ports\n";
    const std::string scheduled = "policy-map type qos ports\n"
                                  "policy-map type queuing ports\n"
                                  "  class type queuing video\n    priority\n"
                                  "  class type queuing voice\n    bandwidth percent 8\n"
                                  "interface Ethernet1/1\n"
                                  "  service-policy type queuing output ports\n";
    const std::string guard = "class-map type control-plane match-any arp\n"
                              "  match protocol arp\n"
                              "policy-map type control-plane guard\n  class arp\n"
                              "    police pps 20\ncontrol-plane\n"
                              "  service-policy input guard\n";
    const std::string groups =
        with(typed, "  match cos 5\n", "  match cos 5\n  match qos-group 7\n");
    struct {
        std::string original, result;
        const char *from, *to, *why;
    } const cases[] = {
        {lane, "policy-map type qos lab\npolicy-map type queuing lab\n", "4.1(2)", "4.2(1)",
         "class v has no class-map in the original either"},
        {untyped + marking, typed + scheduled, "4.1(2)", "4.2(1)",
         "from 4.1(3) on scheduling needs a qos-group, and interface Ethernet1/1 would mark cos 4"},
        {with(typed, "  service-policy type queuing input dc\n", ""),
         with(typed, "  service-policy type queuing input dc\n", ""), "4.2(1)", "4.1(2)",
         "and the original has bandwidth percent 30 for cos 4 in one direction only"},
        {guard, guard, "5.1(1)", "4.1(3)", "is of a control-plane policy, which the target"},
        {groups, untyped, "4.2(1)", "4.1(2)",
         "class voice matches qos-group 7 in the original, which a class-map of the target"}};
    for (const auto &each : cases) {
        const mended_t left = mended(each.original, each.result, each.from, each.to);
        std::string whys;
        for (const auto &by_hand : left.by_hand)
            whys += by_hand.difference.words + ": " + by_hand.why + '\n';
        EXPECT_NE(whys.find(each.why), std::string::npos) << each.why << '\n' << whys;
    }
}

TEST(mend, tells_everything_that_a_fix_mends) {
    const std::string feature = "feature port-security\n";
    const mended_t fixed = mended(feature, feature, "4.1(3)K1(1)", "4.1(3)");
    ASSERT_EQ(fixed.fixes.size(), 1U);
    EXPECT_EQ(fixed.fixes[0].mends.size(), 2U); // one is on, the other is off
}

std::string numbered(const std::string &before, int count, const std::string &behind) {
    std::string text;
    for (int number = 1; number <= count; number++)
        text += before + std::to_string(number) + behind;
    return text;
}

// One error may tell of thousands of lines: each must cost the same.
TEST(mend, brings_back_thousands_of_lines_in_proportional_time) {
    const std::string stanza = "hostname a\nport-security database vsan 2\n";
    const std::string ports = numbered("  pwwn ", 3000, "\n");
    const std::string vlans = numbered("vlan ", 3000, "\n  name lan\n");
    const std::string spoiled = numbered("vlan ", 3000, "\n  name lxn\n");
    const std::clock_t start = std::clock(); // of the processor: others may be at work
    const mended_t fixed =
        mended(vlans + stanza + ports, spoiled + "hostname a\n", "4.1(3)", "4.2(1)");
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 5);
    EXPECT_TRUE(fixed.by_hand.empty());
    EXPECT_EQ(fixed.result, vlans + with(stanza, "port-", "fc-port-") + ports);
}

// Beyond a second or so the search ends, and says what it was given up for.
TEST(mend, gives_up_what_takes_too_long) {
    const std::string others = numbered("interface Ethernet2/", 6000, "\n  description x\n");
    const std::string own = numbered("interface Ethernet1/", 150, "\n  speed 1000\n");
    const std::string lost = numbered("interface Ethernet1/", 150, "\n");
    const mended_t fixed = mended(own + others, lost + others, "4.1(3)", "4.2(1)");
    EXPECT_FALSE(fixed.fixes.empty());
    ASSERT_FALSE(fixed.by_hand.empty());
    EXPECT_NE(fixed.by_hand.back().why.find("too much"), std::string::npos);
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
                       .convert = [&](const std::string &text) -> mending::attempt_t {
                           if (text == good)
                               return {"hostname sw1\n" + typed};
                           return {std::nullopt, "refused"};
                       }});
    ASSERT_EQ(fixed.fixes.size(), 1U);
    EXPECT_EQ(fixed.original, good);
    EXPECT_EQ(fixed.result, "hostname sw1\n" + typed);
    EXPECT_TRUE(fixed.fixes[0].codes.contains("IC090"));
}

// The port and the form are both in the way: one edit after the other.
TEST(mend, edits_an_original_in_several_ways) {
    const std::string original = "hostname sw1\nclass-map a\n\ninterface Ethernet1/1\n"
                                 "  fex associate 101\n  switchport mode fex-fabric\n";
    const std::string good = "hostname sw1\nclass-map a\ninterface Ethernet1/1\n"
                             "  switchport mode fex-fabric\n  fex associate 101\n";
    const std::string_view route[] = {"4.1(2)", "4.1(2)"};
    size_t calls = 0;
    const mended_t fixed =
        mending::mend({.original = original,
                       .result = std::nullopt,
                       .route = route,
                       .convert = [&](const std::string &text) -> mending::attempt_t {
                           calls++;
                           return {text == good ? std::optional(text) : std::nullopt};
                       }});
    ASSERT_EQ(fixed.fixes.size(), 1U);
    EXPECT_EQ(fixed.original, good);
    EXPECT_EQ(calls, 3U); // each alone, then both
    EXPECT_EQ(fixed.fixes[0].words.find("\"switchport mode fex-fabric\" ahead of \"fex "
                                        "associate\"; lines as the switch writes them"),
              0U)
        << fixed.fixes[0].words;
}

// What an edit can mend and lines can too: the cheaper of both, and of two that cost the same the
// one that leaves the original alone.
TEST(mend, chooses_between_an_edit_and_lines) {
    const std::string stays = "  match protocol arp\n"; // nobody can type it away
    const std::string original = "hostname sw1\nfeature lldp\nclass-map a\n\n";
    const std::string kept = "hostname sw1\nfeature lldp\nclass-map a\n";
    const struct {
        const char *what;
        std::string lost, edited;
        std::set<std::string> codes;
        fix_place_t place;
    } rows[] = {
        {"as long", with(kept, "feature lldp\n", ""), kept, {}, fix_place_t::after},
        {"shorter", "class-map a\n", kept, {}, fix_place_t::before},
        {"mends half", "class-map a\n", with(kept, "hostname sw1\n", ""), {}, fix_place_t::after},
        {"loses another",
         with(kept, "hostname sw1\n", ""),
         with(kept, "feature lldp\n", ""),
         {},
         fix_place_t::after},
        {"is not asked for",
         "class-map a\n",
         with(kept, "hostname sw1\n", ""),
         {"IC001"},
         fix_place_t::after},
    };
    const std::string_view route[] = {"4.1(2)", "4.1(2)"};
    for (const auto &row : rows) {
        const std::string result = stays + row.lost;
        const mended_t fixed =
            mending::mend({.original = original,
                           .result = result,
                           .route = route,
                           .convert = [&](const std::string &) -> mending::attempt_t {
                               return {stays + row.edited};
                           },
                           .codes = row.codes});
        ASSERT_FALSE(fixed.fixes.empty()) << row.what;
        EXPECT_EQ(fixed.fixes[0].place, row.place) << row.what;
        EXPECT_EQ(fixed.fixes[0].codes.size(), fixed.fixes[0].mends.size()) << row.what;
        EXPECT_EQ(fixed.by_hand.size(), row.codes.empty() ? 1U : 2U) << row.what;
        EXPECT_EQ(fixed.original == kept, row.place == fix_place_t::before) << row.what;
    }
}

// What the converter refuses goes before the conversion, where the lines after it bring it back.
TEST(mend, leaves_out_what_names_nothing_and_types_it_again) {
    const std::string nothing = "policy-map none\n", port = "interface Ethernet1/1\n";
    const std::string attached = port + "  service-policy input none\n";
    const std::string_view route[] = {"4.1(2)", "4.1(3)"};
    const auto convert = [&](const std::string &maps) {
        return [&, maps](const std::string &text) -> mending::attempt_t {
            if (text.find("input none") == text.npos)
                return {maps + "policy-map type qos none\n" + port};
            return {std::nullopt, "none has no classes"};
        };
    };
    const std::string original = untyped + nothing + attached;
    const mended_t fixed = mending::mend(
        {.original = original, .result = std::nullopt, .route = route, .convert = convert(typed)});
    ASSERT_EQ(fixed.fixes.size(), 2U);
    EXPECT_EQ(fixed.original, untyped + nothing + port);
    const std::vector<std::string> lines = {"interface Ethernet1/1",
                                            "  service-policy type qos input none"};
    EXPECT_EQ(lines_of(fixed.fixes[1].commands), lines);
    // Where more is lost that does not come back, the edit would be a loss of its own.
    const std::string police = "policy-map others\n  class voice\n    police cir 1\n"
                               "interface Ethernet1/2\n  service-policy output others\n";
    const std::string more = original + police;
    const mended_t refused = mending::mend(
        {.original = more, .result = std::nullopt, .route = route, .convert = convert(typed)});
    EXPECT_TRUE(refused.fixes.empty());
}

} // namespace
