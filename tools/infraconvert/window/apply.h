// A plan applied, taken back, and looked at.
//
// What stands in a file, and the journal, decide what is done with it; so a run that was
// interrupted, also by a kill, is simply begun again. One configuration is done like this, and the
// next step is taken only when the one before is on stable storage:
//
//     journal: begin  ->  original kept  ->  file replaced  ->  journal: converted
//
// A file that had to be written in place can be torn by a kill: what stands in it then is partly
// the original, partly the result, at each byte one of the two. That is told from an edit by
// looking at every byte, and both ways out of it are open, since the original is kept.
#pragma once

#include "window/journal.h"
#include "window/plan.h"

#include <functional>
#include <string>
#include <vector>

namespace infraconvert {

enum class standing_t {
    ready,     // the file is what the plan was made for
    unchanged, // the same, and the plan changes nothing in it
    refused,   // the same, and what would be lost was not agreed on
    failed,    // the same, and a service fails
    converted, // what the plan makes of it
    torn,      // the writing of one or the other was interrupted in the midst
    stale,     // somebody else changed it
    unusable,  // it cannot be read, or could not when the plan was made
    blocked,   // the machine is in the way, or was when the plan was made
};
// "ready", "unchanged", ... as in JSON.
const char *standing_name(standing_t standing);

// Where one configuration stands.
struct standing_state_t {
    standing_t standing = standing_t::unusable;
    bool done = false;   // by this run
    std::string why;     // it needs hands; empty: it does not
    int exit_status = 0; // that it asks for
};

// Of a file that is what the plan was made for, or at the moment when it is made.
standing_state_t state_as_planned(const planned_t &planned);

struct window_t {
    // Makes the result of a configuration out of its text. May be called by several threads; throws
    // command_error_t.
    using convert_t = std::function<std::string(const planned_t &, const std::string &text)>;

    const plan_folder_t &folder;
    const plan_t &plan;
    convert_t convert;
    size_t jobs = 1;
    // Told of each configuration in order, by the thread that called.
    std::function<void(size_t index, const standing_state_t &)> tell;
};

// Where each configuration stands. Changes nothing. Throws as last_deeds_t does.
void look_at(const window_t &window);
// Converts each that is ready.
void apply(const window_t &window, journal_t &journal);
// Puts back each that the plan has converted, and that nobody touched since.
void undo(const window_t &window, journal_t &journal);

} // namespace infraconvert
