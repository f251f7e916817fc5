// Texts of several lines within a configuration that are no commands: keys and certificates,
// banners, macros, jobs. Their lines may look like commands, and any of them may be a secret.
#pragma once

#include "base/lines.h"

#include <vector>

namespace infraconvert {

// For each line whether it lies within such a text. The line that opens one is not within it when
// it is a command; what ends one is within it. A text whose end does not come reaches to the end of
// the configuration where only its end tells it from commands.
std::vector<bool> lines_within_texts(const lines_t &lines);

} // namespace infraconvert
