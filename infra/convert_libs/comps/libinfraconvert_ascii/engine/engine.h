// The configuration text engine: everything that the six converters do in the same way, written
// once. A converter owns one engine_t, its instance: the rules by which it differs from the others,
// and the state of its current conversion. The engine knows no converter.
//
// An operation logs under the instance's prefix and its own name, so npiv's read_ascii_file writes
// as npiv_read_ascii_file. The converters give these operations their prefixed names in
// <prefix>_engine.h; an operation that an instance does not have gets no name there.
#pragma once

#include "engine/release.h"
#include "engine/scan.h"
#include "engine/text.h"
#include "platform/platform.h"

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

namespace engine {

constexpr syserr_t failure = static_cast<syserr_t>(-1);

// Where a saved text is shown.
enum class dump_t {
    output,         // standard output
    output_and_log, // and in the log, one message for each byte
    log,            // the log only, marker included
};

class edit_watcher_t; // watchers.h
class search_ahead_t;

struct engine_t {
    // ---- Rules of this instance, never changed ----
    const char *prefix;
    const char *log_path;
    const char *log_mode = "w";
    // The log is written only while this is exactly 1; null: whenever the log is open.
    const boolean *debug_switch = nullptr;
    // The open log, or null.
    FILE **log_stream;
    // Each message begins with the writing function's name and is flushed. Without it the log holds
    // the bare texts, and is closed after each conversion.
    bool log_names_function = true;
    // Room for a file of N bytes: N * capacity_factor + capacity_extra.
    uint32_t capacity_factor = 5;
    uint32_t capacity_extra = 0;
    bool traces_path = false;    // load and save name the path or the file in further messages
    bool traces_size = false;    // a load logs the size of the file
    bool traces_edits = false;   // insertions and deletions log their length
    bool traces_release = false; // a save logs that it gives the memory of the text back
    dump_t dump = dump_t::output;
    release_format_t format = release_format_t::k_train;
    bool platform_keeps_k_train = false; // in a release that the platform's file supplies
    const char *release_separator = " "; // between the two releases in their trace

    // ---- State of its current conversion ----
    text_t *text = nullptr;    // null before the first load
    bool edit_refused = false; // an insertion was refused: the text must not be saved
    edit_watcher_t *watchers = nullptr;
    release_t from = {};
    release_t to = {};
};

// ---- Log (log.cpp) ----

// Opens the log; see Rules above for when.
void log_init(engine_t &e);
// Ends the logging of one conversion.
void log_cleanup(engine_t &e);
// True while a message would be written.
bool log_is_on(const engine_t &e);
// Writes one message of the function `function`.
[[gnu::format(printf, 3, 4)]] void log(const engine_t &e, const char *function, const char *format,
                                       ...);

// What a log shows of a text that may be missing.
inline const char *text_or_null(const char *text) { return text ? text : "(null)"; }

// ---- Releases (versions.cpp) ----

// Reads both releases into the instance; a null text stands for the platform's release file. A
// field that a text does not supply keeps its value from the conversion before. Returns true when
// the two texts differ.
bool read_versions(engine_t &e, const char *from_version, const char *to_version);

// ---- Load and save (load_save.cpp) ----

// Loads `path`/ascii/system.cfg. Returns 0, or -1 with a message.
syserr_t read_ascii_file(engine_t &e, const char *path);
// Saves the text over the same file and shows it. Returns 0, or -1 with a message; the file is then
// as it was, but for the few failures that engine/replace_file.h names.
syserr_t write_ascii_file(engine_t &e, const char *path);
void print_ascii_file(const engine_t &e);

// ---- Edits (edit.cpp) ----

// Deletes the `size` bytes from `from` on, as far as they lie in the text. They may begin in front
// of it: modulo 2^32, -2 is the place two bytes in front of its start.
void delete_text(engine_t &e, position_t from, uint32_t size);
// Inserts `text`, which must not point into the instance's text. Refuses, and marks the text as not
// convertible, where there is no room or when `text` holds the end marker. Returns false then: the
// pass must end with -1.
[[nodiscard]] bool insert_text(engine_t &e, position_t from, std::string_view text);
// Puts `text` in the place of the `size` bytes at `from`, which lie in the text, as deleting and
// inserting would. Neither may hold a zero byte.
[[nodiscard]] bool replace_text(engine_t &e, position_t from, uint32_t size, std::string_view text);
// Removes every `wanted`, with so many bytes before and after it, until none is left. All lengths
// are modulo 2^32: -1 before starts each removal one byte later. Returns 0.
syserr_t remove_regexp(engine_t &e, const char *wanted, uint32_t extra_before_chars,
                       uint32_t extra_after_chars);
syserr_t remove_substring(engine_t &e, const char *wanted);

// A pass that replaces every `wanted` by `replacement`, going forward from the start of the text.
struct replacement_t {
    const char *wanted;
    const char *replacement;
    const char *found;   // logged with the position of an occurrence
    const char *deleted; // the same once it is deleted; may be null
};
// Carries out the replacement for the pass `function`. Returns 0, or -1 after a refused insertion.
syserr_t replace_all(engine_t &e, const char *function, const replacement_t &replacement);

// ---- Lines and stanzas (navigate.cpp) ----
//
// A line ends at a newline. A stanza starts at a line whose first byte is an ASCII letter.

// First `wanted` that begins in [from, before), else nowhere; nowhere also when no text is loaded.
position_t find(const engine_t &e, std::string_view wanted, position_t from,
                position_t before = nowhere);
// First of the first header that the text holds, else nowhere. Each begins with the newline in
// front of its line. A pass that adds many texts asks for the section again and again, so the
// headers are searches that remember. `section` is what the trace calls it.
position_t file_start_section(const engine_t &e, const char *operation, const char *section,
                              std::initializer_list<search_ahead_t *> headers);
// Start of the line after the one that holds `from`, else nowhere. The marker counts as a line.
position_t nextline(const engine_t &e, position_t from);
bool nextstanza(const engine_t &e, position_t line);
// First stanza after the line that holds `from`, else nowhere.
position_t goto_nextstanza(const engine_t &e, position_t from);
// Start of the line that holds `from`, not before `first`.
position_t prevline(const engine_t &e, position_t from, position_t first);
// The line at `from`, without its newline, at most `size` - 1 characters.
std::string getline(const engine_t &e, position_t from, uint32_t size);

} // namespace engine
