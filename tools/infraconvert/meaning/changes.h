// The effect table of a configuration, and what becomes of its rows, for whoever shows them.
#pragma once

#include "meaning/compare.h"

#include <span>
#include <string_view>
#include <vector>

namespace infraconvert::meaning {

enum class change_t { none, lost, gained };

struct changed_row_t {
    row_t row; // of the result, unless it is lost
    change_t change;
};

// What `text` means to its release.
std::vector<changed_row_t> rows_of(std::string_view text, std::string_view release);

// What `after` means to the last release of a route, and the rows of the original, written by the
// first one, that are not there any more. A row whose effect is another one is lost and gained; an
// MTU of the same size is the same, whatever its number. In the order of an effect table.
std::vector<changed_row_t> changed_rows(const original_t &original, std::string_view after,
                                        std::span<const std::string_view> route);

} // namespace infraconvert::meaning
