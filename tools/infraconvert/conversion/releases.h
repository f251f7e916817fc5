// Release texts, checked before anything runs.
#pragma once

#include <string>

namespace infraconvert {

struct release_pair_t {
    std::string from, to;
};

// Throws usage_error_t when an option gives no release.
void require_release(const char *option, const std::string &text);

// Checks the release that an option gives. Throws usage_error_t for a text that is missing or that
// is no release, with what may have been meant; a text of which the converters read a part only,
// and a release beyond the last one that a rule knows of, are told to the user in a message, so
// that each is checked once.
void check_release(const char *option, const std::string &text);

// True for a text that the converters read as a whole.
bool is_complete_release(const std::string &text);

// True when `one` came out before `other`. The K and U releases of a release are newer than it and
// older than the next.
bool is_older(const std::string &one, const std::string &other);

} // namespace infraconvert
