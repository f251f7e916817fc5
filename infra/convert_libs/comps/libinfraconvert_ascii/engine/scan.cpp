// One reader for both sources, over a cursor that shows what stands together from here on; nothing,
// or a zero byte, is the end.

#include "engine/scan.h"

#include <algorithm>

namespace engine {

namespace {

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

struct text_cursor_t {
    const text_t &text;
    position_t here;
    std::string_view together = {};
    std::string_view rest() {
        static constexpr char marker[] = {end_marker};
        if (together.empty() && here <= text.size())
            together =
                here < text.size() ? text.run(here, text.size()) : std::string_view(marker, 1);
        return together;
    }
    void advance(size_t length) {
        here += static_cast<position_t>(length);
        together.remove_prefix(length);
    }
};

struct line_cursor_t {
    std::string_view line;
    std::string_view rest() const { return line; }
    void advance(size_t length) { line.remove_prefix(length); }
};

template<class Cursor> char current(Cursor &cursor) {
    const std::string_view rest = cursor.rest();
    return rest.empty() ? '\0' : rest.front();
}

template<class Cursor> void skip_space(Cursor &cursor) {
    while (is_space(current(cursor)))
        cursor.advance(1);
}

template<class Cursor> std::string read_word(Cursor &cursor) {
    std::string word;
    skip_space(cursor);
    if (current(cursor) == end_marker)
        return word;
    // One character more than fits tells the caller that the word is too long.
    for (bool goes_on = true; goes_on;) {
        const std::string_view rest = cursor.rest().substr(0, area_size - word.size());
        const auto *end =
            std::ranges::find_if(rest, [](char c) { return c == '\0' || is_space(c); });
        word.append(rest.begin(), end);
        goes_on = end == rest.end() && !rest.empty();
        cursor.advance(static_cast<size_t>(end - rest.begin()));
    }
    return word;
}

template<class Cursor> words_t scan(Cursor cursor, std::string_view pattern) {
    words_t words;
    for (; !pattern.empty(); pattern.remove_prefix(1)) {
        const char wanted = pattern.front();
        if (is_space(wanted)) {
            skip_space(cursor);
        } else if (wanted == '%') {
            std::string word = read_word(cursor);
            if (word.empty())
                return words;
            words.word[static_cast<size_t>(words.count++)] = std::move(word);
            if (words.too_long())
                return words;
            pattern.remove_prefix(1); // the "s"
        } else {
            if (current(cursor) != wanted)
                return words;
            cursor.advance(1);
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

words_t scan_words(const text_t &text, position_t from, const char *pattern) {
    return scan(text_cursor_t{text, from}, pattern);
}

words_t scan_words(std::string_view line, const char *pattern) {
    return scan(line_cursor_t{line}, pattern);
}

std::optional<int32_t> scan_number(std::string_view text) {
    line_cursor_t cursor{text};
    skip_space(cursor);
    const bool negative = current(cursor) == '-';
    if (negative || current(cursor) == '+')
        cursor.advance(1);
    if (!is_digit(current(cursor)))
        return std::nullopt;
    int64_t number = 0; // stays well within its range: it is limited after every digit
    for (; is_digit(current(cursor)); cursor.advance(1))
        number = std::min<int64_t>(number * 10 + (current(cursor) - '0'), int64_t{INT32_MAX} + 1);
    number = negative ? -number : std::min<int64_t>(number, INT32_MAX);
    return static_cast<int32_t>(number);
}

} // namespace engine
