// Conversions that the judgement lets pass: the effects before and after are compared here once
// more, in another way than the judgement does it.

#include "infraconvert/meaning/same_effects.h"

#include "meaning/row_words.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using namespace meaning_test;

TEST(effects_of_conversions, that_pass_are_the_same) {
    size_t passed = 0;
    for (const conversion_t &conversion : conversions(1, 150)) {
        if (errors_of(conversion) > 0)
            continue;
        passed++;
        expect_the_same(conversion);
    }
    EXPECT_GT(passed, 75);
    EXPECT_LT(passed, 150) << "some of them lose something";
}

TEST(effects_of_conversions, that_are_golden_are_the_same) {
    size_t with_effects = 0;
    for (const conversion_t &conversion : golden_conversions()) {
        const auto &[from, to] = std::tie(conversion.route.front(), conversion.route.back());
        with_effects += !meaning::rows_of(conversion.before, from).empty();
        expect_the_same(conversion);
    }
    EXPECT_GT(with_effects, 5);
}

TEST(effects, of_the_rest_belong_to_the_group_that_is_set_for_it) {
    const std::string maps = "class-map type queuing lane\n  match qos-group 3\n"
                             "policy-map type qos marks\n  class type qos class-default\n"
                             "    set qos-group 3\n"
                             "policy-map type queuing lanes\n  class type queuing lane\n"
                             "    bandwidth percent 30\n  class type queuing class-default\n"
                             "    bandwidth percent 70\n"
                             "system qos\n  service-policy type qos input marks\n"
                             "  service-policy type queuing output lanes\n";
    const std::set<std::string> all = effects(maps, "5.0(2)", {"5.0(2)", "5.0(2)"});
    EXPECT_TRUE(all.contains("system|output|class-default|bandwidth percent 30"));
    EXPECT_FALSE(all.contains("system|output|class-default|bandwidth percent 70"));
}

TEST(effects, name_so_many_places_and_count_the_others) {
    const std::vector<std::string> places = {"a", "b", "c", "d", "e"};
    EXPECT_EQ(meaning::listed({"a", "b", "c"}, " and ", 3), "a, b and c");
    EXPECT_EQ(meaning::listed(places, " and ", 3), "a, b, c and 2 more");
}

} // namespace
