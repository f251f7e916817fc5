// One reader for both sources, over a cursor that shows the current byte; zero is the end.

#include "engine/scan.h"

#include <algorithm>

namespace engine {

namespace {

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

struct text_cursor {
    const text_t &text;
    position here;
    std::string_view together = text.run(here, text.size()); // some of the bytes from here on
    char get() const { return together.empty() ? text.at(here) : together.front(); }
    void advance() {
        here++;
        together.remove_prefix(together.empty() ? 0 : 1);
    }
};

struct line_cursor {
    std::string_view line;
    size_t here = 0;
    char get() const { return here < line.size() ? line[here] : '\0'; }
    void advance() { here++; }
};

template<class Cursor> void skip_space(Cursor &cursor) {
    while (is_space(cursor.get()))
        cursor.advance();
}

template<class Cursor> std::string read_word(Cursor &cursor) {
    std::string word;
    skip_space(cursor);
    if (cursor.get() == end_marker)
        return word;
    // One character more than fits tells the caller that the word is too long.
    while (cursor.get() != '\0' && !is_space(cursor.get()) && word.size() <= area_length) {
        word += cursor.get();
        cursor.advance();
    }
    return word;
}

template<class Cursor> words_t scan(Cursor cursor, std::string_view pattern) {
    words_t words;
    for (size_t i = 0; i < pattern.size(); i++) {
        if (is_space(pattern[i])) {
            skip_space(cursor);
        } else if (pattern[i] == '%') {
            std::string word = read_word(cursor);
            if (word.empty())
                return words;
            words.word[static_cast<size_t>(words.count++)] = std::move(word);
            if (words.too_long())
                return words;
            i++; // the "s"
        } else {
            if (cursor.get() != pattern[i])
                return words;
            cursor.advance();
        }
    }
    return words;
}

} // namespace

const std::string *words_t::too_long() const {
    const auto *found = std::find_if(word.begin(), word.end(),
                                     [](const std::string &w) { return w.size() > area_length; });
    return found == word.end() ? nullptr : found;
}

words_t scan_words(const text_t &text, position from, const char *pattern) {
    return scan(text_cursor{text, from}, pattern);
}

words_t scan_words(std::string_view line, const char *pattern) {
    return scan(line_cursor{line}, pattern);
}

std::optional<int32_t> scan_number(std::string_view text) {
    line_cursor cursor{text};
    skip_space(cursor);
    const bool negative = cursor.get() == '-';
    if (negative || cursor.get() == '+')
        cursor.advance();
    if (!is_digit(cursor.get()))
        return std::nullopt;
    int64_t number = 0; // stays well within its range: it is limited after every digit
    for (; is_digit(cursor.get()); cursor.advance())
        number = std::min<int64_t>(number * 10 + (cursor.get() - '0'), int64_t{INT32_MAX} + 1);
    number = negative ? -number : std::min<int64_t>(number, INT32_MAX);
    return static_cast<int32_t>(number);
}

} // namespace engine
