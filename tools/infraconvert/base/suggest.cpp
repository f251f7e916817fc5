#include "base/suggest.h"

#include <algorithm>
#include <numeric>

namespace infraconvert {

namespace {

// Insertions, deletions and changes of a character that lead from one word to the other.
size_t distance(std::string_view from, std::string_view to) {
    std::vector<size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < from.size(); i++) {
        size_t diagonal = row[0]++;
        for (size_t j = 0; j < to.size(); j++) {
            const size_t changed = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string suggestion(std::string_view mistyped, const std::vector<std::string> &words) {
    const auto nearest =
        std::min_element(words.begin(), words.end(), [&](const auto &a, const auto &b) {
            return distance(mistyped, a) < distance(mistyped, b);
        });
    if (nearest == words.end() || distance(mistyped, *nearest) > 1 + nearest->size() / 3)
        return "";
    return "; did you mean '" + *nearest + "'?";
}

} // namespace infraconvert
