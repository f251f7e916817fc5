// MTUs that are not the same size, told together.

#include "meaning/comparison.h"
#include "meaning/row_words.h"

namespace infraconvert::meaning {

namespace {

struct told_fate_t {
    mtu_fate_t fate;
    finding_code_t code;
};

constexpr told_fate_t told_fates[] = {
    {mtu_fate_t::wrong, "IC053"},
    {mtu_fate_t::not_raised, "IC051"},
    {mtu_fate_t::limit, "IC052"},
    {mtu_fate_t::lowered_twice, "IC054"},
};

} // namespace

void comparison_t::note_mtu(const std::string &where, mtu_line_t old, mtu_line_t now) {
    const mtu_fate_t fate = fate_of_mtu(old.value, now.value, route);
    if (fate == mtu_fate_t::same_size)
        return;
    const bool stays = old.value == now.value;
    mtus.insert({fate,
                 where + ": " + std::to_string(old.value) +
                     (stays ? " stays" : " becomes " + std::to_string(now.value)) + ", where " +
                     std::to_string(same_size(old.value, route.front(), route.back())) +
                     " would be the same size",
                 old.line, now.line});
}

void tell_mtus(comparison_t &comparison) {
    constexpr size_t most = 3;
    for (const told_fate_t &told : told_fates) {
        std::vector<std::string> values;
        lines_t old_lines, lines;
        for (const auto &change : comparison.mtus) { // those of the same words side by side
            if (change.fate != told.fate)
                continue;
            if (values.empty() || values.back() != change.words)
                values.push_back(change.words);
            old_lines.push_back(change.before);
            lines.push_back(change.after);
        }
        if (!values.empty())
            comparison.add(told.code, listed(values, "; ", most), old_lines, lines);
    }
}

} // namespace infraconvert::meaning
