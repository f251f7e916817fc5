#include "conversion/configuration.h"

#include <algorithm>
#include <cctype>

namespace infraconvert {

namespace {

configuration_t::words_t words_of(std::string_view line) {
    constexpr std::string_view blanks = " \t\r\n";
    configuration_t::words_t words;
    for (size_t at = 0; (at = line.find_first_not_of(blanks, at)) != line.npos;) {
        const size_t end = std::min(line.find_first_of(blanks, at), line.size());
        words.emplace_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

bool has_words(std::string_view line, const configuration_t::words_t &wanted) {
    const auto words = words_of(line);
    return !words.empty() && words[0] == wanted[0] &&
           std::all_of(wanted.begin(), wanted.end(), [&](const std::string &word) {
               return std::find(words.begin(), words.end(), word) != words.end();
           });
}

// True when `line` is what a log shows of the candidate. A log cuts texts that are too long, and
// shows of such a line only the word that is.
bool is_shown_as(std::string_view candidate, std::string_view line) {
    constexpr size_t cut_at = 198;
    return candidate == line || (line.size() >= cut_at && candidate.find(line) != candidate.npos);
}

} // namespace

bool configuration_t::starts_stanza(size_t index) const {
    return std::isalpha(static_cast<unsigned char>(lines[index][0])) != 0;
}

size_t configuration_t::stanza_end(size_t index) const {
    do
        index++;
    while (index < lines.size() && !starts_stanza(index));
    return index;
}

configuration_t::numbers_t configuration_t::lines_with(const words_t &words) const {
    numbers_t numbers;
    for (size_t i = 0; i < lines.size(); i++) {
        if (has_words(lines[i], words))
            numbers.push_back(i + 1);
    }
    return numbers;
}

configuration_t::numbers_t configuration_t::lines_in(std::string_view header,
                                                     const words_t &words) const {
    numbers_t numbers;
    bool inside = false;
    for (size_t i = 0; i < lines.size(); i++) {
        if (starts_stanza(i))
            inside = lines[i].starts_with(header);
        else if (inside && has_words(lines[i], words))
            numbers.push_back(i + 1);
    }
    return numbers;
}

configuration_t::numbers_t configuration_t::stanza_with_both(std::string_view header,
                                                             const words_t &one,
                                                             const words_t &other) const {
    const numbers_t ones = lines_in(header, one), others = lines_in(header, other);
    for (const size_t first : ones) {
        for (const size_t second : others) {
            const auto [low, high] = std::minmax(first, second);
            if (low != high && stanza_end(low - 1) >= high)
                return {low, high};
        }
    }
    return {};
}

configuration_t::numbers_t configuration_t::whole_lines(std::string_view line) const {
    numbers_t numbers;
    for (size_t i = 0; i < lines.size(); i++) {
        if (is_shown_as(without_newline(lines[i]), line))
            numbers.push_back(i + 1);
    }
    return numbers;
}

configuration_t::numbers_t configuration_t::maps(std::string_view keyword,
                                                 std::string_view name) const {
    numbers_t numbers;
    for (size_t i = 0; i < lines.size(); i++) {
        const words_t words = words_of(lines[i]);
        if (starts_stanza(i) && words.size() > 1 && words[0] == keyword && words.back() == name)
            numbers.push_back(i + 1);
    }
    return numbers;
}

configuration_t::numbers_t configuration_t::line_below(std::string_view keyword,
                                                       std::string_view name,
                                                       std::string_view line) const {
    for (const size_t map : maps(keyword, name)) {
        for (size_t i = map; i < stanza_end(map - 1); i++) {
            if (is_shown_as(without_newline(lines[i]), line))
                return {i + 1};
        }
    }
    return {};
}

configuration_t::numbers_t configuration_t::untyped(std::string_view keyword) const {
    numbers_t numbers;
    for (size_t i = 0; i < lines.size(); i++) {
        const words_t words = words_of(lines[i]);
        if (starts_stanza(i) && words[0] == keyword && (words.size() < 2 || words[1] != "type"))
            numbers.push_back(i + 1);
    }
    return numbers;
}

} // namespace infraconvert
