// The VLAN-FCoE association converter's instance of the text engine, and the engine's operations
// under its names; engine/engine.h tells what each does.
//
// It differs from the others in most ways: its log holds bare texts and is closed after each
// conversion, its room is the file and a fixed spare, it shows a saved text in its log only, and
// releases it then.
#pragma once

#include "engine/engine.h"

extern engine::engine_t assoc_engine;

// Writes a message.
#define assoc_log(...) engine::log(assoc_engine, __func__, __VA_ARGS__)

void assoc_log_init();
void assoc_log_cleanup();
syserr_t assoc_read_ascii_file(const char *path);

void assoc_delete_text(engine::position_t from, uint32_t size);
[[nodiscard]] bool assoc_insert_text(engine::position_t from, std::string_view text);

engine::position_t assoc_find(std::string_view wanted, engine::position_t from);

// A line of this instance.
struct assoc_line_t {
    std::string text;           // up to a zero byte in it
    uint32_t newlines_in_front; // that were skipped
    uint32_t length;            // of the whole line, without its newline
    bool found;                 // false where a zero byte stands in place of a line
};

// The line at or behind `from`, past empty lines. A line of more than 2047 bytes is cut there: the
// rest is a line of its own. Zero bytes inside a line do not end it. The last line carries the end
// marker when no newline ends it.
assoc_line_t assoc_getline(engine::position_t from);

// Reads the two releases, both given, and tells whether the converter has anything to do for them.
bool assoc_conversion_needed(const char *from_ver, const char *to_ver);

// True when the releases last read are 4.1 and 5.x.
bool assoc_ver_from_4_1_to_5();
