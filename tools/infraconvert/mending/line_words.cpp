#include "mending/line_words.h"

#include "meaning/reading.h"

#include <algorithm>

namespace infraconvert::mending {

using meaning::split_words;

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

// Where the words of a line begin, else its end.
size_t indentation_of(std::string_view line) {
    return static_cast<size_t>(std::find_if_not(line.begin(), line.end(), is_blank) - line.begin());
}

} // namespace

bool is_plain(std::string_view line) {
    return !line.starts_with(' ') && !line.ends_with(' ') && line.find("  ") == line.npos &&
           line.find_first_of("\t\r\v\f") == line.npos;
}

std::string plain(std::string_view line) {
    return is_plain(line) ? std::string(line) : meaning::joined(split_words(line));
}

bool means_something(std::string_view line) {
    const size_t first = indentation_of(line);
    return first < line.size() && line[first] != '!' && line[first] != '#';
}

bool starts_stanza(std::string_view line) {
    return !line.empty() &&
           ((line[0] >= 'a' && line[0] <= 'z') || (line[0] >= 'A' && line[0] <= 'Z'));
}

std::string keyword_of(std::string_view action) {
    const auto words = split_words(action);
    return words.size() > 1 && words[0] == "set" ? meaning::joined(std::span(words).first(2))
                                                 : std::string(words.empty() ? "" : words[0]);
}

bool is_class_line(std::string_view line) {
    constexpr std::string_view word = "class";
    line.remove_prefix(indentation_of(line));
    return line.starts_with(word) && (line.size() == word.size() || is_blank(line[word.size()]));
}

std::string class_name(std::string_view line) {
    const auto words = split_words(line);
    return words.empty() ? "" : std::string(words.back());
}

} // namespace infraconvert::mending
