// Lines as words between blanks.
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace infraconvert {

constexpr std::string_view word_blanks = " \t\r\n\f\v";

using words_t = std::vector<std::string_view>;

inline words_t words_of(std::string_view line) {
    words_t words;
    for (size_t at = 0; (at = line.find_first_not_of(word_blanks, at)) != line.npos;) {
        const size_t end = std::min(line.find_first_of(word_blanks, at), line.size());
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

inline std::string_view without_blanks(std::string_view text) {
    const size_t first = text.find_first_not_of(word_blanks);
    return first == text.npos ? std::string_view()
                              : text.substr(first, text.find_last_not_of(word_blanks) + 1 - first);
}

} // namespace infraconvert
