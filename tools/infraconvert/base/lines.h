// A text as its lines.
#pragma once

#include <string_view>
#include <vector>

namespace infraconvert {

// The lines of a text, each with its newline; only the last may lack it.
using lines_t = std::vector<std::string_view>;
lines_t split_lines(std::string_view text);

std::string_view without_newline(std::string_view line);

} // namespace infraconvert
