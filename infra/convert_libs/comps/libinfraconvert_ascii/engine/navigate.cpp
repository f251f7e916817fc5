// Walking the text line by line and stanza by stanza.

#include "engine/operation.h"
#include "engine/watchers.h"

namespace engine {

namespace {

bool is_letter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

} // namespace

position find(const engine_t &e, std::string_view wanted, position from, position before) {
    return e.text ? e.text->find(wanted, from, before) : nowhere;
}

position file_start_section(const engine_t &e, const char *operation, const char *section,
                            std::initializer_list<search_ahead_t *> headers) {
    for (search_ahead_t *header : headers) {
        const position found = header->from(0);
        if (found == nowhere)
            continue;
        log_operation(e, operation, "Found beginning of %s-related section at byte %u\n", section,
                      found);
        return found;
    }
    return nowhere;
}

position nextline(const engine_t &e, position from) {
    const position newline = find(e, "\n", from);
    return newline == nowhere ? nowhere : newline + 1;
}

bool nextstanza(const engine_t &e, position line) { return is_letter(e.text->at(line)); }

position goto_nextstanza(const engine_t &e, position from) {
    position line = nextline(e, from);
    while (line != nowhere && !nextstanza(e, line))
        line = nextline(e, line);
    return line;
}

position prevline(const engine_t &e, position from, position first) {
    if (from == nowhere)
        return nowhere;
    const position newline = e.text->newline_before(from, first);
    return newline == nowhere ? first : newline + 1;
}

std::string getline(const engine_t &e, position from, uint32_t size) {
    return e.text->line(from, size - 1);
}

} // namespace engine
