// The longest common subsequence comes from dtl. Lines are numbers to it, and it sees only what can
// be in doubt: not the common start and end, and not the lines that the other text does not have.
// Without that a configuration that is rewritten in every line would take quadratic time.

#include "base/diff.h"

#include <dtl/dtl.hpp>

#include <algorithm>
#include <unordered_map>

namespace infraconvert {

namespace {

struct numbered_t {
    std::vector<uint32_t> lines; // numbers of equal lines are equal
    std::vector<uint32_t> index; // where each stands in its text
};

// The range of lines of one text that is to be compared.
struct range_t {
    const lines_t &lines;
    uint32_t first, end;
};

using numbers_t = std::unordered_map<std::string_view, uint32_t>;

numbers_t numbers_of(const range_t &range) {
    numbers_t numbers;
    for (uint32_t i = range.first; i < range.end; i++)
        numbers.try_emplace(range.lines[i], static_cast<uint32_t>(numbers.size()));
    return numbers;
}

// The lines of `range` that stand in both texts.
numbered_t shared_lines(const range_t &range, const numbers_t &own, const numbers_t &other) {
    numbered_t result;
    for (uint32_t i = range.first; i < range.end; i++) {
        if (!other.contains(range.lines[i]))
            continue;
        result.lines.push_back(own.at(range.lines[i]));
        result.index.push_back(i);
    }
    return result;
}

void append_common(const range_t &before, const range_t &after, std::vector<match_t> &matches) {
    const numbers_t before_numbers = numbers_of(before), after_numbers = numbers_of(after);
    const numbered_t a = shared_lines(before, before_numbers, after_numbers);
    const numbered_t b = shared_lines(after, before_numbers, before_numbers);
    dtl::Diff<uint32_t> diff(a.lines, b.lines);
    diff.compose();
    for (const auto &[number, where] : diff.getSes().getSequence()) {
        if (where.type == dtl::SES_COMMON)
            matches.push_back({a.index[static_cast<size_t>(where.beforeIdx - 1)],
                               b.index[static_cast<size_t>(where.afterIdx - 1)]});
    }
}

// End of the run of matches that begins at `first`: lines that follow one another in both texts.
size_t run_end(const std::vector<match_t> &matches, size_t first) {
    size_t end = first + 1;
    while (end < matches.size() && matches[end].before == matches[end - 1].before + 1 &&
           matches[end].after == matches[end - 1].after + 1)
        end++;
    return end;
}

// Lines of the larger side of the change between two positions.
size_t size_of_change(const match_t &from, const match_t &to) {
    return std::max(to.before - from.before, to.after - from.after);
}

// True when none of the lines starts a stanza.
bool is_body(const lines_t &lines, uint32_t first, uint32_t end) {
    return std::all_of(lines.begin() + first, lines.begin() + end,
                       [](std::string_view line) { return line.starts_with(' '); });
}

} // namespace

std::vector<match_t> common_lines(const lines_t &before, const lines_t &after) {
    const auto shorter = static_cast<uint32_t>(std::min(before.size(), after.size()));
    uint32_t head = 0;
    while (head < shorter && before[head] == after[head])
        head++;
    uint32_t tail = 0;
    while (tail < shorter - head &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        tail++;
    const auto before_end = static_cast<uint32_t>(before.size()) - tail;
    const auto after_end = static_cast<uint32_t>(after.size()) - tail;

    std::vector<match_t> matches;
    for (uint32_t i = 0; i < head; i++)
        matches.push_back({i, i});
    append_common({before, head, before_end}, {after, head, after_end}, matches);
    for (uint32_t i = 0; i < tail; i++)
        matches.push_back({before_end + i, after_end + i});
    return matches;
}

std::vector<match_t> without_stray_matches(const std::vector<match_t> &matches,
                                           const lines_t &before, const lines_t &after) {
    std::vector<match_t> kept;
    match_t end = {0, 0}; // of the last run that is kept
    for (size_t first = 0, next; first < matches.size(); first = next) {
        next = run_end(matches, first);
        const match_t start = matches[first];
        const match_t behind = {matches[next - 1].before + 1, matches[next - 1].after + 1};
        const match_t following = next < matches.size()
                                      ? matches[next]
                                      : match_t{static_cast<uint32_t>(before.size()),
                                                static_cast<uint32_t>(after.size())};
        const size_t length = next - first;
        const bool stray = is_body(before, start.before, behind.before) &&
                           2 * length < size_of_change(end, start) &&
                           2 * length < size_of_change(behind, following);
        if (stray)
            continue;
        kept.insert(kept.end(), &matches[first], &matches[first] + length);
        end = behind;
    }
    return kept;
}

script_t difference(const lines_t &before, const lines_t &after) {
    return script_of(before.size(), after.size(),
                     without_stray_matches(common_lines(before, after), before, after));
}

script_t script_of(size_t before, size_t after, const std::vector<match_t> &matches) {
    script_t script;
    uint32_t b = 0, a = 0;
    const auto change_up_to = [&](uint32_t b_end, uint32_t a_end) {
        for (; b < b_end; b++)
            script.push_back({line_edit_t::remove, b, a});
        for (; a < a_end; a++)
            script.push_back({line_edit_t::add, b, a});
    };
    for (const match_t &match : matches) {
        change_up_to(match.before, match.after);
        script.push_back({line_edit_t::keep, b++, a++});
    }
    change_up_to(static_cast<uint32_t>(before), static_cast<uint32_t>(after));
    return script;
}

count_t count_changes(const script_t &script) {
    count_t count;
    for (const script_line_t &line : script) {
        count.added += line.edit == line_edit_t::add;
        count.removed += line.edit == line_edit_t::remove;
    }
    return count;
}

} // namespace infraconvert
