// Does the switch still do with every packet what it did? A pure function over two texts.
#pragma once

#include "meaning/difference.h"
#include "meaning/side.h"

#include <span>
#include <string_view>
#include <vector>

namespace infraconvert::meaning {

// A configuration, read once for all comparisons of what becomes of it.
class original_t {
  public:
    // `text`, written by `release`, must outlive the object.
    original_t(std::string_view text, std::string_view release) : side(text, release, release) {}

    // What became of it on a route of at least two releases, of which the first one wrote the
    // original and the last one reads `result`; those between them are those that it was converted
    // through. What the original has wrong already is a warning, once. The order is that of the
    // findings' severity, then of the lines.
    std::vector<difference_t> compare(std::string_view result,
                                      std::span<const std::string_view> route) const;

    // The same in two steps, for whoever needs to look into the result besides.
    static side_t read(std::string_view result, std::span<const std::string_view> route) {
        return {result, route.back(), route.front()};
    }
    std::vector<difference_t> compare(const side_t &result,
                                      std::span<const std::string_view> route) const;

    const side_t side;
};

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
