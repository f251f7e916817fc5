// Does the switch still do with every packet what it did? A pure function over two texts.
#pragma once

#include "meaning/difference.h"

#include <span>
#include <string_view>
#include <vector>

namespace infraconvert::meaning {

// Compares `before`, written by the first release of `route`, with `after`, which the last one
// reads; releases between them are those that the configuration was converted through. A route has
// at least two. What `before` has wrong already is a warning, once. The order is that of the
// findings' severity, then of the lines.
std::vector<difference_t> compare(std::string_view before, std::string_view after,
                                  std::span<const std::string_view> route);

// The form of a text as its own release reads it: what it would not read, as errors, and maps that
// nothing uses, as notes.
std::vector<difference_t> judge_form(std::string_view text, std::string_view release);

// What the text has that no form of the other release can say, as errors.
std::vector<difference_t> unsayable(std::string_view text, std::string_view from,
                                    std::string_view to);

// The number of the line that names another release as the text's writer; 0 when none does.
uint32_t other_version_line(std::string_view text, std::string_view release);

bool has_errors(const std::vector<difference_t> &differences);

} // namespace infraconvert::meaning
