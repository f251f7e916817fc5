// What changed within lines: "policy-map {+type qos+} campus-in".
#pragma once

#include "base/lines.h"

#include <string>

namespace infraconvert {

struct word_diff_t {
    bool color = false;
    bool visible = false; // control bytes of the words
};

// The lines that take the place of others, word by word: what is gone stands in "[-" and "-]", what
// is new in "{+" and "+}". Every line ends, also the last one of a text.
std::string word_diff(const lines_t &removed, const lines_t &added, const word_diff_t &format);

} // namespace infraconvert
