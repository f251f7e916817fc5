// Where a change window stands, or what was done with it: counts, and those that need hands.
#pragma once

#include "window/apply.h"

#include <string>
#include <vector>

namespace infraconvert {

enum class window_verb_t { preview, convert, undo };

struct window_report_t {
    struct line_t {
        std::string file;
        planned_t planned;
        standing_state_t state;
    };

    window_verb_t verb;
    std::string plan; // its file; empty: there is none
    std::string mend; // as the option, of the plan or of the command; empty: nothing is mended
    std::vector<line_t> lines = {};

    // The status that wins; to would_change where something would, when asked for.
    int exit_status(bool tells_change = false) const;
};

std::string window_text(const window_report_t &report);
// With the names of all.
std::string window_json(const window_report_t &report);

} // namespace infraconvert
