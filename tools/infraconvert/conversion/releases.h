// Release texts, checked before anything runs.
#pragma once

#include <string>

namespace infraconvert {

struct release_pair_t {
    std::string from, to;
};

// The same pair. Throws usage_error_t for a text that is missing or that no converter can read; a
// text that they read only in part is told to the user in a message.
release_pair_t checked_releases(const release_pair_t &written);

// Tells the user when the configuration itself names another release than `from` as its writer.
void compare_with_version_line(const std::string &configuration, const std::string &from);

} // namespace infraconvert
