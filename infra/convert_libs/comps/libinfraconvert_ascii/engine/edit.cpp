// Deleting, inserting and removing text in place.

#include "engine/operation.h"
#include "engine/watchers.h"

#include <algorithm>
#include <cstring>

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

// One pass over the text behind `from`. Each search goes on at the position of the last occurrence,
// which may then stand inside the text that followed it, so that an occurrence can be left over
// there or where a removal joined two texts. Returns where the first of these may begin, nowhere
// when there is none.
position_t remove_once_through(engine_t &e, const removal_t &removal, position_t from) {
    position_t left_over = nowhere;
    for (position_t at = from; (at = e.text->find(removal.wanted, at)) != nowhere;) {
        const uint32_t size_before = e.text->size();
        delete_text(e, at - removal.before, removal.length);
        if (e.text->size() == size_before) // the same occurrence would be found for ever
            return nowhere;
        const auto reach = static_cast<position_t>(removal.before + removal.wanted.size());
        const position_t joined = is_negative(reach) ? at : at - std::min(at, reach);
        if (left_over == nowhere && e.text->find(removal.wanted, joined, at) != nowhere)
            left_over = joined;
    }
    return left_over;
}

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
    for (position_t from = 0; from < e.text->end(0);)
        from = remove_once_through(e, removal, from);
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
