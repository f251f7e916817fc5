// Words and numbers in the text, by the rules of the C library's formatted scanning. That itself
// would measure the whole rest of the text on every call.
//
// In a pattern a blank skips any run of white space, newlines included, also none; "%s" reads one
// word, up to the next white space or zero byte; every other character must match. No word begins
// at the end marker, but one that runs into it carries it.
#pragma once

#include "engine/text.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace engine {

// Names and lines live in areas of 200 bytes: 199 characters and a terminator.
constexpr uint32_t area_size = 200;
constexpr uint32_t area_length = area_size - 1;

struct words_t {
    int count = 0; // words read before the pattern ended or did not fit
    std::array<std::string, 3> word;

    // A word that does not fit an area, or null. It is cut right behind the area's length.
    const std::string *too_long() const;
};

// Reads the words of `pattern` (at most three) from the text at `from`.
words_t scan_words(const text_t &text, position_t from, const char *pattern);

// The same from a line that was copied out of the text.
words_t scan_words(std::string_view line, const char *pattern);

// The decimal number at the start of `text`, behind white space and with an optional sign, limited
// to 32 bits; nothing when there are no digits.
std::optional<int32_t> scan_number(std::string_view text);

} // namespace engine
