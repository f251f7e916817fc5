#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"

using engine::nowhere;
using engine::position_t;

position_t qoscnv_end_of_text(position_t from) { return qoscnv_engine.text->end(from); }

position_t qoscnv_line_after(position_t cp) {
    const position_t line = qoscnv_nextline(cp);
    return line == nowhere ? qoscnv_end_of_text(cp) : line;
}

position_t qoscnv_stanza_after(position_t cp) {
    const position_t stanza = qoscnv_goto_nextstanza(cp);
    return stanza == nowhere ? qoscnv_end_of_text(cp) : stanza;
}

bool qoscnv_in_body(position_t cp) { return cp < qoscnv_end_of_text(cp) && !qoscnv_nextstanza(cp); }

position_t qoscnv_past_empty_lines(position_t cp) {
    while (qoscnv_engine.text->at(cp) == '\n')
        cp++;
    return cp;
}

position_t qoscnv_behind_last_stanza(engine::last_hits_t &headers, size_t ending) {
    const position_t section = qoscnv_file_start_qossection();
    if (section == nowhere)
        return nowhere;
    const position_t last = headers.find(ending);
    if (last == nowhere || last <= section)
        return nowhere;
    return headers.stanza_behind(ending);
}

std::string qoscnv_linebuf(position_t cp) { return qoscnv_getline(cp, engine::area_size); }
