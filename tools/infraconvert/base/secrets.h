// Secrets out of sight: passwords, keys and community strings in what is shown.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// The line with "<masked>" in place of each secret. The same secret always gives the same text.
std::string masked(std::string_view line);
// The same of each line of a text.
std::string masked_lines(std::string_view text);

} // namespace infraconvert
