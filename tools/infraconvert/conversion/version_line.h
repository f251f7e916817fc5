// What a configuration itself says about the release that wrote it.
#pragma once

#include <string>

namespace infraconvert {

// True when the configuration names another release than `from` as its writer.
bool names_other_release(const std::string &configuration, const std::string &from);

} // namespace infraconvert
