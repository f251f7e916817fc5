// Work that is shared.

#include "window/crew.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

using namespace infraconvert;

TEST(crew, hands_results_over_in_order_and_is_never_far_ahead) {
    constexpr size_t count = 500, jobs = 4;
    std::atomic<size_t> made = 0, taken = 0, furthest = 0;
    std::vector<size_t> results;
    make_in_order<size_t>(
        count, jobs,
        [&](size_t number) {
            if (number % 50 == 0) // slow ones do not let later ones overtake
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            furthest = std::max<size_t>(furthest, ++made - taken);
            return number * 2;
        },
        [&](size_t number, size_t result) {
            EXPECT_EQ(result, number * 2);
            results.push_back(number);
            taken++;
        });
    ASSERT_EQ(results.size(), count);
    EXPECT_TRUE(std::is_sorted(results.begin(), results.end()));
    EXPECT_LE(furthest, jobs * tasks_ahead_of_each_job + 1);
}

TEST(crew, ends_with_what_was_thrown) {
    const auto run = [](size_t bad_make, size_t bad_take) {
        const auto fail_at = [](size_t bad) {
            return [bad](size_t number, size_t) {
                if (number == bad)
                    throw std::runtime_error(std::to_string(number));
            };
        };
        share_in_order(300, 3, fail_at(bad_make), fail_at(bad_take));
    };
    EXPECT_NO_THROW(run(300, 300));
    EXPECT_THROW(run(200, 300), std::runtime_error);
    EXPECT_THROW(run(300, 0), std::runtime_error);
}

} // namespace
