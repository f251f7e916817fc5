// Walking the text line by line and stanza by stanza.

#include "engine/operation.h"

namespace engine {

namespace {

bool is_letter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

} // namespace

position find(const engine_t &e, std::string_view wanted, position from, position before) {
    return e.text ? e.text->find(wanted, from, before) : nowhere;
}

// A pass that adds many texts asks for the section again and again, so the search goes on from
// where the last one ended.
position file_start_section(engine_t &e, const char *operation, const char *section,
                            std::initializer_list<const char *> headers) {
    auto clear_to = e.no_section_before.begin();
    for (const char *header : headers) {
        const position found = find(e, header, *clear_to);
        if (found == nowhere) {
            *clear_to = e.text ? e.text->end(*clear_to) : 0;
            clear_to++;
            continue;
        }
        *clear_to = found;
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
