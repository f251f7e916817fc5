// Fixes: what is lost in a conversion, brought back by edits before it or by lines after it. A fix
// is offered only when the comparison of the mended result with the original says that what it is
// for is there again and that nothing else is different; fixes that are applied together are proved
// together.
#pragma once

#include "meaning/difference.h"
#include "mending/commands.h"

#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace infraconvert::mending {

// Errors, and an MTU that is another size in the end than after one conversion, though no release
// stands against the right one.
bool wants_lines(const finding_kind_t &kind);
inline bool wants_lines(const meaning::difference_t &difference) {
    return wants_lines(difference.code.kind());
}

enum class fix_place_t { before, after };

struct fix_t {
    fix_place_t place;
    std::set<std::string> codes;              // of the findings that it mends
    std::vector<meaning::difference_t> mends; // none for a conversion that failed
    std::string edited = {};                  // before the conversion: the original as edited
    commands_t commands = {};                 // after it, to be typed or to stand in the file
    std::string words = {};                   // of edits: what they do
};

// What wants lines and has no fix.
struct by_hand_t {
    meaning::difference_t difference;
    std::string why;
    // Lines after the conversion, each of which would be a fix, but which make different switches.
    std::vector<commands_t> choices = {};
};

struct mended_t {
    std::vector<fix_t> fixes; // in the order in which they are applied
    std::vector<by_hand_t> by_hand;
    std::string original;     // with the edits
    std::string converted;    // what the library makes of it
    std::string result;       // with the lines: what the switch saves when they were typed
    std::string refusal = {}; // of the last edited original that was not converted
};

// What becomes of an edited original.
struct attempt_t {
    std::optional<std::string> text; // none: the conversion failed
    std::string refusal = {};        // why
};

struct mending_request_t {
    std::string_view original;
    std::optional<std::string_view> result;  // none: the conversion failed
    std::span<const std::string_view> route; // at least two releases
    // Converts an edited original as the result was made. Without it there are no edits before the
    // conversion.
    std::function<attempt_t(const std::string &)> convert = {};
    std::set<std::string> codes = {}; // only what has one of these; empty: all
};

// Looks for fixes of everything between the original and the result that wants lines. None at all
// when nothing does. Throws what `convert` throws.
mended_t mend(const mending_request_t &request);

} // namespace infraconvert::mending
