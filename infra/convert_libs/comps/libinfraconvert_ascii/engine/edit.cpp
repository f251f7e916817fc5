// Deleting, inserting and removing text in place.

#include "engine/operation.h"

#include <cstring>

namespace engine {

namespace {

bool refuse(engine_t &e, uint32_t size) {
    e.edit_refused = true;
    log_operation(e, "insert_text", "refusing to insert text of length %d\n",
                  static_cast<int>(size));
    return false;
}

} // namespace

void delete_text(engine_t &e, position from, uint32_t size) {
    const auto bytes_in_front = -static_cast<int32_t>(from);
    if (bytes_in_front <= 0)
        e.text->erase(from, size);
    else if (size > static_cast<uint32_t>(bytes_in_front))
        e.text->erase(0, size - static_cast<uint32_t>(bytes_in_front));
    if (e.traces_edits)
        log_operation(e, "delete_text", "deleting text of length %d\n", static_cast<int>(size));
}

bool insert_text(engine_t &e, position from, std::string_view text) {
    const auto size = static_cast<uint32_t>(text.size());
    if (!e.text->has_room(from, size) || text.find(end_marker) != text.npos)
        return refuse(e, size);
    e.text->insert(from, text);
    if (e.traces_edits)
        log_operation(e, "insert_text", "inserting text of length %d\n", static_cast<int>(size));
    return true;
}

namespace {

// One pass over the text, true when another one may find more. Each search goes on at the position
// of the last occurrence, which may then stand inside the text that followed it.
bool remove_once_through(engine_t &e, std::string_view wanted, uint32_t before, uint32_t length) {
    bool removed = false;
    for (position at = 0; (at = e.text->find(wanted, at)) != nowhere; removed = true) {
        const uint32_t size_before = e.text->size();
        delete_text(e, at - before, length);
        if (e.text->size() == size_before) // the same occurrence would be found for ever
            return false;
    }
    return removed;
}

} // namespace

syserr_t remove_regexp(engine_t &e, const char *wanted, uint32_t extra_before_chars,
                       uint32_t extra_after_chars) {
    log_operation(e, "remove_regexp", "removing substring \"%s\" ...\n", wanted);
    const auto length = static_cast<uint32_t>(strlen(wanted));
    if (!e.text || length == 0)
        return 0;
    while (remove_once_through(e, wanted, extra_before_chars,
                               length + extra_before_chars + extra_after_chars)) {
    }
    return 0;
}

syserr_t remove_substring(engine_t &e, const char *wanted) {
    return remove_regexp(e, wanted, 0, 0);
}

// Finds the occurrences one after another, with the positions that they have while everything in
// front is already replaced, and writes the text behind the first one anew in one go: the cost
// follows the length of the text, not the number of occurrences.
syserr_t replace_all(engine_t &e, const char *function, const replacement_t &replacement) {
    const std::string_view wanted = replacement.wanted;
    const position first = find(e, wanted, 0);
    if (first == nowhere)
        return 0;
    std::string rewritten;
    position unread = first;
    for (position at = first; at != nowhere; at = find(e, wanted, unread)) {
        rewritten += e.text->copy(unread, at - unread);
        const auto offset = static_cast<int>(first + rewritten.size());
        log(e, function, "%s %d\n", replacement.found, offset);
        if (replacement.deleted)
            log(e, function, "%s %d\n", replacement.deleted, offset);
        rewritten += replacement.replacement;
        unread = at + static_cast<uint32_t>(wanted.size());
    }
    e.text->erase(first, unread - first);
    const auto size = static_cast<uint32_t>(rewritten.size());
    if (!e.text->has_room(first, size)) {
        refuse(e, size);
        return failure;
    }
    e.text->insert(first, rewritten);
    return 0;
}

} // namespace engine
