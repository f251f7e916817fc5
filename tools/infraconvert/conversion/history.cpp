#include "conversion/history.h"

#include <numeric>

namespace infraconvert {

history_t::history_t(const shared_text_t &text)
    : current(text), original_lines(split_lines(*text)), lines(original_lines), original(text),
      removed_by(lines.size(), -1), added_by(lines.size(), -1), origin(lines.size()) {
    std::iota(origin.begin(), origin.end(), 0u);
}

count_t history_t::record(int step, shared_text_t text) {
    if (*text == *current)
        return {};
    lines_t after = split_lines(*text);
    const script_t script = difference(lines, after);
    carry(script, step);
    lines = std::move(after);
    current = std::move(text);
    return count_changes(script);
}

void history_t::carry(const script_t &script, int step) {
    std::vector<int> next_added_by;
    std::vector<uint32_t> next_origin;
    for (const script_line_t &line : script) {
        if (line.edit == line_edit_t::keep) {
            next_added_by.push_back(added_by[line.before]);
            next_origin.push_back(origin[line.before]);
        } else if (line.edit == line_edit_t::add) {
            next_added_by.push_back(step);
            next_origin.push_back(0);
        } else if (added_by[line.before] < 0) {
            removed_by[origin[line.before]] = step;
        }
    }
    added_by = std::move(next_added_by);
    origin = std::move(next_origin);
}

// The lines of the original that are still there, and between two of them those that one step
// removed and another wrote again.
std::vector<match_t> history_t::survivors() const {
    std::vector<match_t> matches;
    uint32_t before = 0, after = 0;
    const auto compare_up_to = [&](uint32_t before_end, uint32_t after_end) {
        const lines_t removed(&original_lines[before],
                              &original_lines[before] + (before_end - before));
        const lines_t added(&lines[after], &lines[after] + (after_end - after));
        for (const match_t &match : common_lines(removed, added))
            matches.push_back({before + match.before, after + match.after});
    };
    const auto size = static_cast<uint32_t>(lines.size());
    for (uint32_t i = 0; i <= size; i++) {
        if (i < size && added_by[i] >= 0)
            continue;
        const auto end = i < size ? origin[i] : static_cast<uint32_t>(original_lines.size());
        if (end > before && i > after)
            compare_up_to(end, i);
        if (i < size)
            matches.push_back({end, i});
        before = end + 1;
        after = i + 1;
    }
    return matches;
}

namespace {

// Gives changed lines without a step the step of the changed line before them.
template<class Iterator> void spread_steps(Iterator line, Iterator end) {
    for (int step = -1; line != end; ++line) {
        if (line->edit == line_edit_t::keep)
            step = -1;
        else if (line->step < 0)
            line->step = step;
        else
            step = line->step;
    }
}

} // namespace

script_t history_t::script() const {
    script_t script = script_of(original_lines.size(), lines.size(),
                                without_stray_matches(survivors(), original_lines, lines));
    for (script_line_t &line : script) {
        if (line.edit == line_edit_t::remove)
            line.step = removed_by[line.before];
        else if (line.edit == line_edit_t::add)
            line.step = added_by[line.after];
    }
    spread_steps(script.begin(), script.end());
    spread_steps(script.rbegin(), script.rend());
    return script;
}

} // namespace infraconvert
