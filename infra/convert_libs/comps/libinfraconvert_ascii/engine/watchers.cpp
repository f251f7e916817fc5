// An edit in front of what is known moves it; one behind it may have brought something; one in the
// midst of it makes the next look a search.

#include "engine/watchers.h"

#include <algorithm>

namespace engine {

namespace {

// A text of this length that begins in front of the result does not reach into the edited place.
position_t untouched_before(const edit_t &edit, size_t length) {
    return edit.at - std::min(edit.at, static_cast<position_t>(length - 1));
}

position_t end_of_text(const engine_t &e, position_t from) {
    return e.text ? e.text->end(from) : 0;
}

} // namespace

edit_watcher_t::edit_watcher_t(engine_t &watched) : e(watched), next_watcher(watched.watchers) {
    e.watchers = this;
}

edit_watcher_t::~edit_watcher_t() {
    edit_watcher_t **link = &e.watchers;
    while (*link != this)
        link = &(*link)->next_watcher;
    *link = next_watcher;
}

position_t search_ahead_t::from(position_t at) {
    if (at < clear_from || at > clear_to)
        clear_from = clear_to = at;
    const position_t hit = find(e, wanted, clear_to);
    clear_to = hit == nowhere ? end_of_text(e, clear_to) : hit;
    return hit;
}

void search_ahead_t::edited(const edit_t &edit) {
    const position_t untouched = untouched_before(edit, wanted.size());
    if (untouched >= clear_to)
        return;
    if (edit.at < clear_from) {
        const bool in_front = edit.behind_removed() <= clear_from;
        clear_from = in_front ? clear_from + edit.shift() : edit.at;
        clear_to = in_front ? clear_to + edit.shift() : edit.at;
        return;
    }
    const position_t first = std::max(untouched, clear_from);
    // A zero byte that came in hides what stands behind it.
    if (edit.behind_removed() > clear_to || end_of_text(e, first) < edit.behind_inserted()) {
        clear_to = first;
        return;
    }
    const position_t came = find(e, wanted, first, edit.behind_inserted());
    clear_to = came == nowhere ? clear_to + edit.shift() : came;
}

last_hits_t::last_hits_t(engine_t &watched, const std::string &common,
                         std::initializer_list<const char *> endings)
    : edit_watcher_t(watched), beginning(common) {
    for (const char *ending : endings) {
        hits.push_back({.wanted = common + ending});
        longest = std::max(longest, hits.back().wanted.size());
    }
}

// Takes the last hit that begins in [from, before), if there is one.
void last_hits_t::search(hit_t &hit, position_t from, position_t before) {
    for (; (from = engine::find(e, hit.wanted, from, before)) != nowhere; from++)
        hit.at = hit.clear_to = from;
}

position_t last_hits_t::find(size_t ending) {
    hit_t &hit = hits[ending];
    if (!hit.known) {
        hit.at = nowhere;
        search(hit, 0, nowhere);
        hit.known = true;
        end = end_of_text(e, 0);
    }
    return hit.at;
}

position_t last_hits_t::stanza_behind(size_t ending) {
    hit_t &hit = hits[ending];
    if (find(ending) == nowhere)
        return nowhere;
    const position_t line = hit.wanted.front() == '\n' ? hit.at + 1 : hit.at;
    const position_t stanza = goto_nextstanza(e, std::max(line, hit.clear_to));
    // A stanza begins behind a newline, from which it is found again.
    const position_t last_newline = (stanza == nowhere ? end_of_text(e, line) : stanza) - 1;
    hit.clear_to = std::max(line, last_newline);
    return stanza;
}

// Few edits bring a hit, so they are looked at for what all have in common.
void last_hits_t::edited(const edit_t &edit) {
    if (edit.at > end)
        return;
    end += edit.shift();
    const bool same_end = end == end_of_text(e, 0); // else a zero byte came or went
    const bool may_bring = engine::find(e, beginning, untouched_before(edit, longest),
                                        edit.behind_inserted()) != nowhere;
    for (hit_t &hit : hits) {
        hit.known &= same_end;
        if (hit.known)
            update(hit, edit, may_bring);
    }
}

void last_hits_t::update(hit_t &hit, const edit_t &edit, bool may_bring) {
    const bool in_front = hit.at != nowhere && edit.behind_removed() <= hit.at;
    if (in_front) {
        hit.at += edit.shift();
        hit.clear_to += edit.shift();
    } else if (hit.at != nowhere && edit.at < hit.at + hit.wanted.size()) {
        hit.known = false;
    } else {
        hit.clear_to = std::min(hit.clear_to, untouched_before(edit, 2));
        if (may_bring)
            search(hit, untouched_before(edit, hit.wanted.size()), edit.behind_inserted());
    }
}

} // namespace engine
