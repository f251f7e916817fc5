// Conversions that lose something, mended: what the search calls mended has the effects of the
// original, as another comparison sees them.

#include "infraconvert/meaning/same_effects.h"

#include "mending/mend.h"

#include <gtest/gtest.h>

namespace {

using namespace meaning_test;

TEST(mended_results, have_the_effects_of_their_originals) {
    size_t lossy = 0, mended = 0;
    for (const conversion_t &conversion : conversions(5, 120)) {
        if (errors_of(conversion) == 0)
            continue;
        const std::string_view route[] = {conversion.route.front(), conversion.route.back()};
        const auto fixed = infraconvert::mending::mend(
            {.original = conversion.before, .result = conversion.after, .route = route});
        lossy++;
        if (!fixed.by_hand.empty())
            continue;
        mended++;
        expect_the_same({conversion.before, fixed.result, conversion.route});
        EXPECT_EQ(errors_of({conversion.before, fixed.result, conversion.route}), 0)
            << conversion.words();
    }
    EXPECT_GT(lossy, 10);
    EXPECT_GT(mended, 5);
}

} // namespace
