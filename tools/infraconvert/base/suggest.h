// "did you mean": the nearest of some words to one that was mistyped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace infraconvert {

// "; did you mean 'WORD'?" with the nearest of `words`, or nothing when none is near.
std::string suggestion(std::string_view mistyped, const std::vector<std::string> &words);

} // namespace infraconvert
