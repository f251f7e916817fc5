// Deleting, inserting and removing text in place.

#include "engine/operation.h"
#include "engine/watchers.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace engine {

namespace {

// Positions and lengths are modulo 2^32: the upper half of the numbers stands for those below 0.
bool is_negative(uint32_t number) { return number > INT32_MAX; }

void erase(engine_t &e, position_t from, uint32_t size) {
    const uint32_t size_before = e.text->size();
    e.text->erase(from, size);
    tell_watchers(e, {from, size_before - e.text->size(), 0});
}

bool refuse(engine_t &e, uint32_t size) {
    e.edit_refused = true;
    log_operation(e, "insert_text", "refusing to insert text of length %d\n",
                  static_cast<int>(size));
    return false;
}

bool insert(engine_t &e, position_t from, std::string_view text) {
    const auto size = static_cast<uint32_t>(text.size());
    if (!e.text->has_room(from, size) || text.find(end_marker) != text.npos)
        return refuse(e, size);
    e.text->insert(from, text);
    tell_watchers(e, {from, 0, size});
    return true;
}

// A removal: the bytes from `before` bytes in front of an occurrence on.
struct removal_t {
    std::string_view wanted;
    uint32_t before, length;
};

// Where an occurrence may begin. Nowhere, less what went so far, still lies behind every text.
struct window_t {
    position_t from, before;
};

// One pass over what begins in `windows`. The search goes on at the position of the last
// occurrence, which may then stand inside the text that followed it, so that an occurrence can be
// left over there or where a removal joined two texts. Returns where that is so.
class removal_pass_t {
  public:
    removal_pass_t(engine_t &engine, const removal_t &removal) : e(engine), wanted(removal) {}

    std::vector<window_t> run(const std::vector<window_t> &windows) {
        at = windows.front().from;
        for (const window_t &window : windows) {
            const position_t from = std::max(at, moved(window.from));
            if (from > e.text->end(at) || !sweep(from, window.before))
                break;
        }
        return std::move(left_over);
    }

  private:
    // Where the place is by now, or what follows it when it went.
    position_t moved(position_t place) const { return place - std::min(place, removed); }

    // Removes what begins in [from, before), a place counted as when the pass began. Returns false
    // when nothing could be removed: the same occurrence would be found for ever.
    bool sweep(position_t from, position_t before) {
        before = moved(before);
        for (position_t hit; (hit = e.text->find(wanted.wanted, from, before)) != nowhere;
             from = at) {
            at = hit;
            const position_t visible = e.text->end(at);
            const uint32_t gone = remove();
            if (gone == 0) {
                left_over.clear();
                return false;
            }
            removed += gone;
            // A zero byte that went hid text that no pass has looked at.
            if (e.text->end(at) > visible - std::min(visible, gone))
                before = nowhere;
            else
                before = std::max(before - std::min(before, gone), behind_kept());
        }
        return true;
    }

    // Returns how many bytes went.
    uint32_t remove() {
        const uint32_t size_before = e.text->size();
        delete_text(e, at - wanted.before, wanted.length);
        const auto reach = static_cast<position_t>(wanted.before + wanted.wanted.size());
        const position_t joined = is_negative(reach) ? at : at - std::min(at, reach);
        if (e.text->find(wanted.wanted, joined, at) != nowhere)
            left_over.push_back({joined, at});
        return size_before - e.text->size();
    }

    // What is kept of an occurrence may begin another one together with what followed it.
    position_t behind_kept() const { return is_negative(wanted.before) ? at - wanted.before : 0; }

    engine_t &e;
    const removal_t &wanted;
    position_t at = 0;    // of the last occurrence
    uint32_t removed = 0; // so far
    std::vector<window_t> left_over;
};

} // namespace

void tell_watchers(const engine_t &e, const edit_t &edit) {
    for (edit_watcher_t *watcher = e.watchers; watcher; watcher = watcher->next())
        watcher->edited(edit);
}

void delete_text(engine_t &e, position_t from, uint32_t size) {
    const uint32_t in_front_of_text = is_negative(from) ? 0 - from : 0;
    if (in_front_of_text == 0)
        erase(e, from, size);
    else if (size > in_front_of_text)
        erase(e, 0, size - in_front_of_text);
    if (e.traces_edits)
        log_operation(e, "delete_text", "deleting text of length %d\n", static_cast<int>(size));
}

bool insert_text(engine_t &e, position_t from, std::string_view text) {
    if (!insert(e, from, text))
        return false;
    if (e.traces_edits)
        log_operation(e, "insert_text", "inserting text of length %d\n",
                      static_cast<int>(text.size()));
    return true;
}

bool replace_text(engine_t &e, position_t from, uint32_t size, std::string_view text) {
    const auto inserted = static_cast<uint32_t>(text.size());
    if (e.traces_edits)
        log_operation(e, "delete_text", "deleting text of length %d\n", static_cast<int>(size));
    const bool fits = inserted <= size || e.text->has_room(from, inserted - size);
    if (!fits || text.find(end_marker) != text.npos)
        return refuse(e, inserted);
    e.text->replace(from, size, text);
    tell_watchers(e, {from, size, inserted});
    if (e.traces_edits)
        log_operation(e, "insert_text", "inserting text of length %d\n",
                      static_cast<int>(inserted));
    return true;
}

syserr_t remove_regexp(engine_t &e, const char *wanted, uint32_t extra_before_chars,
                       uint32_t extra_after_chars) {
    log_operation(e, "remove_regexp", "removing substring \"%s\" ...\n", wanted);
    const auto length = static_cast<uint32_t>(strlen(wanted));
    if (!e.text || length == 0)
        return 0;
    const removal_t removal = {wanted, extra_before_chars,
                               length + extra_before_chars + extra_after_chars};
    std::vector<window_t> windows = {{0, nowhere}};
    while (!windows.empty() && windows.front().from < e.text->end(0))
        windows = removal_pass_t(e, removal).run(windows);
    return 0;
}

syserr_t remove_substring(engine_t &e, const char *wanted) {
    return remove_regexp(e, wanted, 0, 0);
}

syserr_t replace_all(engine_t &e, const char *function, const replacement_t &replacement) {
    const std::string_view wanted = replacement.wanted, put = replacement.replacement;
    for (position_t at = 0; (at = find(e, wanted, at)) != nowhere;
         at += static_cast<uint32_t>(put.size())) {
        log(e, function, "%s %d\n", replacement.found, static_cast<int>(at));
        if (replacement.deleted)
            log(e, function, "%s %d\n", replacement.deleted, static_cast<int>(at));
        if (!replace_text(e, at, static_cast<uint32_t>(wanted.size()), put))
            return failure;
    }
    return 0;
}

} // namespace engine
