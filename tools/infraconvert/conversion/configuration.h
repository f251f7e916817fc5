// Finding lines of a configuration by what stands in them. All line numbers count from 1.
//
// A stanza starts at a line whose first byte is a letter and runs up to the next such line.
#pragma once

#include "base/lines.h"

#include <string>
#include <string_view>
#include <vector>

namespace infraconvert {

class configuration_t {
  public:
    using numbers_t = std::vector<size_t>;
    using words_t = std::vector<std::string>;

    // `text` must outlive the object.
    explicit configuration_t(std::string_view text) : lines(split_lines(text)) {}

    // Lines that begin with the first of `words` and have all of them.
    numbers_t lines_with(const words_t &words) const;
    // The same within stanzas whose first line begins with `header`.
    numbers_t lines_in(std::string_view header, const words_t &words) const;
    // The two lines, one of each, of the first stanza that has both.
    numbers_t stanza_with_both(std::string_view header, const words_t &one,
                               const words_t &other) const;
    // Lines that a log shows as `line`: it cuts long ones.
    numbers_t whole_lines(std::string_view line) const;

    // The first lines of the maps ("policy-map", "class-map") of this name, typed or not.
    numbers_t maps(std::string_view keyword, std::string_view name) const;
    // The first line in such a map that a log shows as `line`.
    numbers_t line_below(std::string_view keyword, std::string_view name,
                         std::string_view line) const;
    // The first lines of maps without a type.
    numbers_t untyped(std::string_view keyword) const;

  private:
    bool starts_stanza(size_t index) const;
    size_t stanza_end(size_t index) const;

    lines_t lines;
};

} // namespace infraconvert
