// Each change over several random steps has its step.

#include "conversion/history.h"

#include "infraconvert/base/random_text.h"

#include <gtest/gtest.h>

namespace {

using namespace infraconvert;
using support::applied;
using support::random_text_t;

TEST(history, knows_the_step_of_each_change) {
    for (unsigned seed = 0; seed < 2000; seed++) {
        random_text_t random(seed);
        const auto original = std::make_shared<const std::string>(random.text());
        history_t history(original);
        auto text = original;
        for (int step = 0; step < 4; step++) {
            text = std::make_shared<const std::string>(random.changed(*text));
            history.record(step, text);
        }
        const script_t script = history.script();
        const lines_t before = split_lines(*original), after = split_lines(*text);
        EXPECT_EQ(applied(script, before, after), *text) << seed;
        for (const script_line_t &line : script)
            EXPECT_EQ(line.edit == line_edit_t::keep, line.step < 0) << seed;
    }
}

// "b" moves and moves back: nothing has changed in the end.
TEST(history, finds_again_what_one_step_removed_and_another_wrote) {
    const auto original = std::make_shared<const std::string>("a\nb\nc\n");
    history_t history(original);
    history.record(0, std::make_shared<const std::string>("a\nc\nb\n"));
    history.record(1, std::make_shared<const std::string>("x\na\nb\nc\n"));
    const count_t count = count_changes(history.script());
    EXPECT_EQ(count.added, 1u);
    EXPECT_EQ(count.removed, 0u);
}

// Ten thousand changed lines are no reason to take quadratic time or to lose the lines between.
} // namespace
