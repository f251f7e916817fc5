// Lines as patterns of words:
//
//     [no] port-security|fc-port-security database [vsan %list]
//     priority-flow-control {mode|on|off}
//
// a|b is one of these words, %shape a word of that shape (word_shapes.h), [ ] may be left out and {
// } may stand any number of times.
#pragma once

#include "secrets/word_shapes.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace infraconvert {

class line_pattern_t {
  public:
    // `text` must outlive the pattern. At most 63 words and brackets.
    explicit line_pattern_t(std::string_view text);

    // How many words, from the first, are a line of the pattern; 0 when none are.
    size_t fitting_words(std::span<const std::string_view> words) const;

    // The words with which a line may begin; empty when it may begin with a shape.
    std::vector<std::string_view> first_words() const;

  private:
    struct alternative_t {
        std::string_view literal;     // empty: a shape
        word_shape_t shape = nullptr; // of the word
    };
    struct node_t {
        enum class kind_t { word, open_optional, open_repeated, close_optional, close_repeated };
        kind_t kind;
        std::vector<alternative_t> alternatives = {}; // of a word
        size_t other = 0;                             // the bracket that belongs to this one
    };
    // Bit N stands for the place in front of node N.
    using places_t = uint64_t;

    void add_word(std::string_view token);
    void close_bracket(std::vector<size_t> &open);
    void enter(size_t place, places_t &places) const;
    places_t after_word(places_t places, std::string_view word) const;
    static bool fits(const node_t &node, std::string_view word);

    std::vector<node_t> nodes;
};

} // namespace infraconvert
