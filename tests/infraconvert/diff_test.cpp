// Scripts over random texts: applied they give the other text, and each change has its step.

#include "conversion/history.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using namespace infraconvert;

class random_text_t {
  public:
    explicit random_text_t(unsigned seed) : random(seed) {}

    size_t below(size_t end) { return random() % end; }

    // Few different lines, so that many of them match by chance.
    std::string line() {
        constexpr const char *lines[] = {"vlan 1\n", "  fcoe\n", "  name a\n", "class c\n", "\n"};
        return lines[below(std::size(lines))];
    }

    std::string text() {
        std::string result;
        for (size_t count = below(12); count > 0; count--)
            result += line();
        return below(4) == 0 ? result + "end without newline" : result;
    }

    // Removes and adds lines here and there.
    std::string changed(const std::string &text) {
        std::string result;
        for (const std::string_view kept : split_lines(text)) {
            if (below(5) == 0)
                result += line();
            if (below(5) != 0 || !kept.ends_with('\n'))
                result += kept;
        }
        return result;
    }

  private:
    std::mt19937 random;
};

std::string applied(const script_t &script, const lines_t &before, const lines_t &after) {
    std::string result;
    size_t next = 0;
    for (const script_line_t &line : script) {
        const bool kept = line.edit == line_edit_t::keep;
        EXPECT_EQ(line.before, next);
        EXPECT_TRUE(!kept || before[line.before] == after[line.after]);
        next += line.edit != line_edit_t::add;
        if (line.edit != line_edit_t::remove)
            result += after[line.after];
    }
    EXPECT_EQ(next, before.size());
    return result;
}

TEST(Difference, LeadsFromOneTextToTheOther) {
    for (unsigned seed = 0; seed < 2000; seed++) {
        random_text_t random(seed);
        const std::string before = random.text();
        const std::string after = seed % 2 == 0 ? random.changed(before) : random.text();
        const lines_t b = split_lines(before), a = split_lines(after);
        EXPECT_EQ(applied(difference(b, a), b, a), after) << seed;
        EXPECT_EQ(common_lines(b, b).size(), b.size());
    }
}

TEST(History, KnowsTheStepOfEachChange) {
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
TEST(History, FindsAgainWhatOneStepRemovedAndAnotherWrote) {
    const auto original = std::make_shared<const std::string>("a\nb\nc\n");
    history_t history(original);
    history.record(0, std::make_shared<const std::string>("a\nc\nb\n"));
    history.record(1, std::make_shared<const std::string>("x\na\nb\nc\n"));
    const count_t count = count_changes(history.script());
    EXPECT_EQ(count.added, 1u);
    EXPECT_EQ(count.removed, 0u);
}

// Ten thousand changed lines are no reason to take quadratic time or to lose the lines between.
TEST(Difference, KeepsUnchangedLinesAmongManyChanges) {
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
