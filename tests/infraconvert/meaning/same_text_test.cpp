// A text compared with itself: nothing is lost, however odd it is. What its release does not read
// may be told, for the form check tells it too.

#include "infraconvert/meaning/configurations.h"

#include "meaning/compare.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>

namespace {

using namespace infraconvert;
using namespace meaning_test;

// Stanzas of both models side by side, in any order, some twice, with lines missing and lines of
// others among them.
std::string odd_text(chance_t &chance) {
    const std::string both = configuration(chance, true) + configuration(chance, false);
    std::vector<std::string> stanzas;
    for (const std::string &line : meaning_test::lines_of(both)) {
        if (!line.starts_with(' ') || stanzas.empty())
            stanzas.emplace_back();
        if (line.starts_with(' ') && chance.one_in(30))
            continue;
        stanzas[line.starts_with(' ') && chance.one_in(30) ? chance.below(stanzas.size())
                                                           : stanzas.size() - 1] += line;
    }
    std::string text;
    for (size_t left = stanzas.size(); left > 0; left--) {
        const size_t any = chance.one_in(3) ? chance.below(stanzas.size()) : stanzas.size() - left;
        text += stanzas[any];
    }
    return text;
}

std::set<std::string> errors_in(const std::vector<meaning::difference_t> &differences) {
    std::set<std::string> codes;
    for (const meaning::difference_t &difference : differences) {
        if (difference.is_error())
            codes.insert(difference.code.name());
    }
    return codes;
}

TEST(same_text, has_no_error_that_its_form_has_not) {
    const char *releases[] = {"4.1(2)", "4.1(3)", "4.2(1)", "5.0(3)U2(1)"};
    chance_t chance(3);
    for (int i = 0; i < 400; i++) {
        const std::string text = odd_text(chance);
        const std::string_view release = releases[chance.below(std::size(releases))];
        const std::string_view stays[] = {release, release};
        const auto form = errors_in(meaning::judge_form(text, release));
        for (const std::string &code :
             errors_in(meaning::original_t(text, release).compare(text, stays)))
            EXPECT_TRUE(form.contains(code)) << code << ' ' << release << '\n' << text;
    }
}

} // namespace
