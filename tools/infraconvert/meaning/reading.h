// A configuration as a switch reads it: lines by their words, stanzas by their first byte.
//
//     hostname sw1            a line whose first byte is a letter opens a stanza,
//     interface Ethernet1/1
//       no shutdown           and the lines up to the next such line are its body
//     !                       means nothing, like an empty line
//
// Everything here points into the text, which must outlive it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace infraconvert::meaning {

struct line_t {
    std::string_view text; // without the blanks around it and without its end
    uint32_t number = 0;   // from 1
    uint32_t indent = 0;   // bytes of blanks in front of the text
};

struct stanza_t {
    line_t header; // without a text for the lines ahead of the first stanza
    std::span<const line_t> body;
};

struct reading_t {
    explicit reading_t(std::string_view text);
    reading_t(const reading_t &) = delete; // its stanzas point into its lines

    std::vector<line_t> lines; // those that mean something
    std::vector<stanza_t> stanzas;
    uint32_t carriage_returns = 0;      // lines that end with CR, with or without LF
    uint32_t first_carriage_return = 0; // number of the first of them
    bool ends_with_newline = true;
    uint32_t last_line = 0; // number of the last line

  private:
    void read(std::string_view raw);
    void add(std::string_view raw);
};

using words_t = std::vector<std::string_view>;
words_t split_words(std::string_view line);

// The words with one blank between two.
std::string joined(std::span<const std::string_view> words);

// True when `line` consists of `words`, or begins with them.
bool is_exactly(std::string_view line, std::initializer_list<std::string_view> words);
bool begins_with(std::span<const std::string_view> line,
                 std::initializer_list<std::string_view> words);

} // namespace infraconvert::meaning
