// What a configuration itself says about the release that wrote it.
#pragma once

#include <string>

namespace infraconvert {

// The release that the configuration itself names as its writer. Throws input_error_t when there is
// none, or more than one.
std::string release_of_version_line(const std::string &configuration);

// True when the configuration names another release than `from` as its writer.
bool names_other_release(const std::string &configuration, const std::string &from);

// Tells the user when it does.
void compare_with_version_line(const std::string &configuration, const std::string &from);

} // namespace infraconvert
