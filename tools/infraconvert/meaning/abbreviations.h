// Words that an engineer cut short. A switch never saves them so, but takes them as the whole word,
// and a converter passes them over: what they say must not go unread.
#pragma once

#include "meaning/reading.h"

namespace infraconvert::meaning {

enum class position_t { first_line, body };

// The words of a line, the known commands in full: "service-pol input dc" is "service-policy input
// dc". Words of which the model knows nothing stay as they are.
words_t full_words(std::string_view line, position_t position);

} // namespace infraconvert::meaning
