#include "meaning/changes.h"

#include "meaning/pairing.h"

#include <algorithm>
#include <tuple>

namespace infraconvert::meaning {

namespace {

bool stands_before(const changed_row_t &a, const changed_row_t &b) {
    const auto key = [](const row_t &row) {
        return std::tie(row.place, row.direction, row.traffic, row.keyword);
    };
    return std::pair(key(a.row), a.change) < std::pair(key(b.row), b.change);
}

} // namespace

std::vector<changed_row_t> rows_of(std::string_view text, std::string_view release) {
    std::vector<changed_row_t> rows;
    for (row_t &row : effects_of(model_t(text, release, release)))
        rows.push_back({std::move(row), change_t::none});
    return rows;
}

std::vector<changed_row_t> changed_rows(const original_t &original, std::string_view after,
                                        std::span<const std::string_view> route) {
    const side_t result = original_t::read(after, route);
    const comparison_t comparison(original.side, result, route);
    const pairing_t pairs(comparison);
    std::vector<changed_row_t> rows;
    for (const fate_t &fate : pairs.before) {
        if (!fate.same)
            rows.push_back({*fate.row, change_t::lost});
    }
    for (const fate_t &fate : pairs.after)
        rows.push_back({*fate.row, fate.same ? change_t::none : change_t::gained});
    std::stable_sort(rows.begin(), rows.end(), stands_before);
    return rows;
}

} // namespace infraconvert::meaning
