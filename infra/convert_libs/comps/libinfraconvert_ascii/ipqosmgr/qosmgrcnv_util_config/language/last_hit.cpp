// An edit behind the hit may have brought a later one; an edit in front of it moves it; an edit of
// the hit itself is rare, and makes the next look a search of the whole text.

#include "ipqosmgr/qosmgrcnv_util_config/language/last_hit.h"

#include "ipqosmgr/qosmgrcnv_util_config/language/words.h"

#include <algorithm>

// Takes the last hit that begins in [from, before), if there is one.
void last_hit_t::search(position from, position before) {
    for (; (from = qoscnv_find(wanted, from, before)) != nowhere; from++)
        hit = from;
}

position last_hit_t::find() {
    const position end_now = qoscnv_end_of_text(0);
    if (!known || end != end_now) { // an edit that took the zero byte away shows more of the text
        hit = nowhere;
        search(0, nowhere);
        known = true;
        end = end_now;
    }
    return hit;
}

void last_hit_t::edited(const engine::edit_t &edit, bool may_bring) {
    end += edit.inserted - edit.removed;
    if (hit != nowhere && edit.at + edit.removed <= hit) {
        hit += edit.inserted - edit.removed;
        return;
    }
    if (hit != nowhere && edit.at < hit + length(wanted)) {
        known = false;
        return;
    }
    const uint32_t overlap = length(wanted) - 1;
    if (known && may_bring)
        search(edit.at - std::min(edit.at, overlap), edit.at + edit.inserted);
}
