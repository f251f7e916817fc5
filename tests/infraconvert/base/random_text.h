// Small random texts and their changes, and what a script makes of them.
#pragma once

#include "base/diff.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace support {

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

// The other text, as the script makes it of the one and the lines that it adds.
inline std::string applied(const script_t &script, const lines_t &before, const lines_t &after) {
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

} // namespace support
