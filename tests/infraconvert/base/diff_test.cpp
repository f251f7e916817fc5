// Scripts between random texts: applied they give the other text.

#include "infraconvert/base/random_text.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using support::applied;
using support::random_text_t;

TEST(difference, leads_from_one_text_to_the_other) {
    for (unsigned seed = 0; seed < 2000; seed++) {
        random_text_t random(seed);
        const std::string before = random.text();
        const std::string after = seed % 2 == 0 ? random.changed(before) : random.text();
        const lines_t b = split_lines(before), a = split_lines(after);
        EXPECT_EQ(applied(difference(b, a), b, a), after) << seed;
        EXPECT_EQ(common_lines(b, b).size(), b.size());
    }
}

TEST(difference, keeps_unchanged_lines_among_many_changes) {
    std::string before, after;
    for (int i = 0; i < 10000; i++) {
        before += "mac address-table " + std::to_string(i) + "\n  same\n";
        after += "mac-address-table " + std::to_string(i) + "\n  same\n";
    }
    const count_t count = count_changes(difference(split_lines(before), split_lines(after)));
    EXPECT_EQ(count.added, 10000u);
    EXPECT_EQ(count.removed, 10000u);
}

} // namespace
