// Which step changed which line, when several steps lead from one text to another.
//
// Each line of the text at hand is followed back to the line of the original that it is; a line
// that is none was added by a step. The difference between original and result is put together
// from the steps' own differences, so each changed line belongs to exactly one step: for a line
// of the original the step that removed it, for a line of the result the one that added it last. A
// line that is shown as changed only because reading is easier so goes with the changes around it.
#pragma once

#include "base/diff.h"
#include "base/files.h"

namespace infraconvert {

class history_t {
  public:
    explicit history_t(const shared_text_t &original);

    // Takes `text` as the result of step number `step`. Returns how much the step changed.
    count_t record(int step, shared_text_t text);

    // The difference between the original and the text recorded last.
    script_t script() const;

  private:
    void carry(const script_t &script, int step);
    std::vector<match_t> survivors() const;

    shared_text_t current;
    lines_t original_lines, lines; // of the original, of the current text
    shared_text_t original;
    std::vector<int> removed_by;  // for each line of the original, -1 while it is there
    std::vector<int> added_by;    // for each line at hand, -1 for one of the original
    std::vector<uint32_t> origin; // for each line at hand of the original, its number there
};

} // namespace infraconvert
