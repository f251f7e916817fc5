// Where lines, bodies and stanzas of the text end. The end of the text ends each of them, but it
// does not begin one.
#pragma once

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_engine.h"

engine::position_t qoscnv_end_of_text(engine::position_t from);
// Start of the next line, else the end of the text.
engine::position_t qoscnv_line_after(engine::position_t cp);
// Start of the next stanza, else the end of the text.
engine::position_t qoscnv_stanza_after(engine::position_t cp);
// True while the line at `cp` belongs to the body of the current stanza.
bool qoscnv_in_body(engine::position_t cp);
// First line at or after `cp` that is not empty.
engine::position_t qoscnv_past_empty_lines(engine::position_t cp);
// Start of the next stanza behind the last of `headers` with that ending, where that lies behind
// the first byte of the QoS section; else nowhere. A header that begins with a newline stands at
// line starts only. So the section's first class-map does not count: a text with no other has
// nothing to go behind.
engine::position_t qoscnv_behind_last_stanza(engine::last_hits_t &headers, size_t ending = 0);

// The line at `cp` as its copy: at most 199 characters.
std::string qoscnv_linebuf(engine::position_t cp);
