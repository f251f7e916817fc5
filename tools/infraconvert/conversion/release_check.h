// One release text alone, where there is no pair.
#pragma once

#include <string>

namespace infraconvert {

// Checks the release that an option gives, as checked_releases does with two.
void check_release(const char *option, const std::string &text);

} // namespace infraconvert
