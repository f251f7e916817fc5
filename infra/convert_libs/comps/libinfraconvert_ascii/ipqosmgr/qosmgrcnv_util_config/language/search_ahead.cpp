// What is known of the text is one run without a hit.

#include "ipqosmgr/qosmgrcnv_util_config/language/search_ahead.h"

#include <algorithm>

position search_ahead_t::from(position at) {
    if (at < clear_from || at > clear_to)
        clear_from = clear_to = at;
    const position hit = qoscnv_find(wanted, clear_to);
    clear_to = hit == nowhere ? qoscnv_end_of_text(clear_to) : hit;
    return hit;
}

// A hit that reaches into the edited place may have come or gone.
void search_ahead_t::edited(position at) {
    const uint32_t overlap = length(wanted) - 1;
    const position untouched = at - std::min(at, overlap);
    clear_to = std::max(clear_from, std::min(clear_to, untouched));
}
