// A difference as a unified diff: for patch, for any viewer, or annotated for people.
#pragma once

#include "base/diff.h"

#include <functional>
#include <string>

namespace infraconvert {

struct unified_t {
    std::string before_label, after_label;
    size_t context = 3; // unchanged lines around each change
    bool color = false;
    bool visible = false; // control bytes of the lines
    bool words = false;   // what changes within lines, for people; goes with no margin
    // Text for the margin left of a changed line, cut or padded to `margin` characters. Without a
    // margin the diff is as patch takes it.
    std::function<std::string(const script_line_t &)> annotation;
    size_t margin = 0;
};

// The diff, empty when the script changes nothing.
std::string unified_diff(const lines_t &before, const lines_t &after, const script_t &script,
                         const unified_t &format);

} // namespace infraconvert
