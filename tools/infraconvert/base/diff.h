// Lines that two texts have in common, and what became of the others.
#pragma once

#include "base/lines.h"

#include <cstdint>
#include <vector>

namespace infraconvert {

// Line `before` of the one text stays as line `after` of the other, both counted from 0.
struct match_t {
    uint32_t before, after;
};

// A longest common subsequence.
std::vector<match_t> common_lines(const lines_t &before, const lines_t &after);

enum class line_edit_t { keep, remove, add };

// One line of an edit script.
struct script_line_t {
    line_edit_t edit;
    uint32_t before, after; // line numbers from 0; where the line is missing, of the next one
    int step = -1;          // the conversion step that removed or added it, -1: not known
};
using script_t = std::vector<script_line_t>;

// The script for `before` and `after` lines of which these stay; removals stand before additions.
script_t script_of(size_t before, size_t after, const std::vector<match_t> &matches);

// Leaves out matches that hinder reading: a few lines below a stanza's first line that happen to
// stand in both texts, between changes that are much larger. A difference that keeps them is
// shorter, and ties together lines that have nothing to do with each other.
std::vector<match_t> without_stray_matches(const std::vector<match_t> &matches,
                                           const lines_t &before, const lines_t &after);

// The script that leads from one text to the other.
script_t difference(const lines_t &before, const lines_t &after);

struct count_t {
    size_t added = 0, removed = 0;
};
count_t count_changes(const script_t &script);

} // namespace infraconvert
