// Rows of the effect table in words.
#pragma once

#include "meaning/effects.h"

#include <string>
#include <vector>

namespace infraconvert::meaning {

// "a, b and c"; of more than `most` as many and how many more.
std::string listed(const std::vector<std::string> &parts, const char *last, size_t most);

// "Ethernet1/1 input and output" where both say the same.
std::vector<std::string> places_in_words(const std::vector<const row_t *> &rows);

// "system input and output: priority for cos 5 is gone", for all rows.
std::string rows_in_words(const std::vector<const row_t *> &rows, const char *verb);

} // namespace infraconvert::meaning
