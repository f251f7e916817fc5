// Walking the text line by line and stanza by stanza.

#include "engine/operation.h"
#include "engine/watchers.h"

namespace engine {

namespace {

bool is_letter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

} // namespace

position_t find(const engine_t &e, std::string_view wanted, position_t from, position_t before) {
    return e.text ? e.text->find(wanted, from, before) : nowhere;
}

position_t file_start_section(const engine_t &e, const char *operation, const char *section,
                              std::initializer_list<search_ahead_t *> headers) {
    for (search_ahead_t *header : headers) {
        const position_t found = header->from(0);
        if (found == nowhere)
            continue;
        log_operation(e, operation, "Found beginning of %s-related section at byte %u\n", section,
                      found);
        return found;
    }
    return nowhere;
}

position_t nextline(const engine_t &e, position_t from) {
    const position_t newline = find(e, "\n", from);
    return newline == nowhere ? nowhere : newline + 1;
}

bool nextstanza(const engine_t &e, position_t line) { return is_letter(e.text->at(line)); }

position_t goto_nextstanza(const engine_t &e, position_t from) {
    position_t line = nextline(e, from);
    while (line != nowhere && !nextstanza(e, line))
        line = nextline(e, line);
    return line;
}

position_t prevline(const engine_t &e, position_t from, position_t first) {
    if (from == nowhere)
        return nowhere;
    const position_t newline = e.text->newline_before(from, first);
    return newline == nowhere ? first : newline + 1;
}

std::string getline(const engine_t &e, position_t from, uint32_t size) {
    return e.text->line(from, size - 1);
}

} // namespace engine
