#include "meaning/reading.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool means_nothing(std::string_view text) {
    return text.empty() || text[0] == '!' || text[0] == '#';
}

line_t read_line(std::string_view raw, uint32_t number) {
    size_t first = 0, end = raw.size();
    while (first < end && is_blank(raw[first]))
        first++;
    while (end > first && is_blank(raw[end - 1]))
        end--;
    return {raw.substr(first, end - first), number, static_cast<uint32_t>(first)};
}

void group(reading_t &reading) {
    const std::span<const line_t> lines(reading.lines);
    size_t at = 0;
    while (at < lines.size()) {
        const bool opens = lines[at].indent == 0 && is_letter(lines[at].text[0]);
        const size_t first = opens ? at + 1 : at;
        size_t end = first;
        while (end < lines.size() && !(lines[end].indent == 0 && is_letter(lines[end].text[0])))
            end++;
        reading.stanzas.push_back(
            {opens ? lines[at] : line_t(), lines.subspan(first, end - first)});
        at = end;
    }
}

} // namespace

reading_t::reading_t(std::string_view text)
    : ends_with_newline(text.empty() || text.back() == '\n') {
    lines.reserve(text.size() / 16);
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view raw = text.substr(at, end - at);
        at = end + 1;
        last_line++;
        read(raw);
    }
    group(*this);
}

// A carriage return without a newline behind it ends a line for some systems and for others not.
// Here it does, so that nothing behind it goes unread.
void reading_t::read(std::string_view raw) {
    for (size_t end = raw.find('\r'); end != raw.npos; end = raw.find('\r')) {
        if (carriage_returns++ == 0)
            first_carriage_return = last_line;
        add(raw.substr(0, end));
        raw.remove_prefix(end + 1);
    }
    add(raw);
}

void reading_t::add(std::string_view raw) {
    const line_t line = read_line(raw, last_line);
    if (!means_nothing(line.text))
        lines.push_back(line);
}

words_t split_words(std::string_view line) {
    words_t words;
    words.reserve(8);
    for (size_t at = 0; at < line.size();) {
        const size_t first = at;
        while (at < line.size() && !is_blank(line[at]))
            at++;
        if (at > first)
            words.push_back(line.substr(first, at - first));
        else
            at++;
    }
    return words;
}

std::string joined(std::span<const std::string_view> words) {
    std::string text;
    for (const std::string_view word : words)
        (text += text.empty() ? "" : " ") += word;
    return text;
}

bool is_exactly(std::string_view line, std::initializer_list<std::string_view> words) {
    const words_t read = split_words(line);
    return std::equal(read.begin(), read.end(), words.begin(), words.end());
}

bool begins_with(std::span<const std::string_view> line,
                 std::initializer_list<std::string_view> words) {
    return line.size() >= words.size() && std::equal(words.begin(), words.end(), line.begin());
}

} // namespace infraconvert::meaning
