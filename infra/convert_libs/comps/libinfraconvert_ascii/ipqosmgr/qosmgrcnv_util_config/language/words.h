// The QoS part of the configuration language: its keywords, the lines that the passes compose, and
// where lines, bodies and stanzas end.
//
// Each pass logs under its own name, also from the functions that it is made of; so these take the
// name of the pass that they work for.
#pragma once

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_engine.h"

#include <string>
#include <string_view>

using engine::nowhere;
using engine::position;
using engine::scan_words;
using engine::words_t;

// Headers at a line start begin with the newline in front of their line.
constexpr uint32_t newline_length = 1;

constexpr std::string_view class_default = "class-default";
constexpr std::string_view class_fcoe = "class-fcoe";
constexpr std::string_view class_ip_multicast = "class-ip-multicast";
constexpr std::string_view class_all_flood = "class-all-flood";

// Types of an action; those of a class, class-map or policy-map are a set of them.
constexpr uint8_t QOSCNV_TYPE_NONE = 0;    // no recognised action
constexpr uint8_t QOSCNV_TYPE_QOS = 1;     // classification: set qos-group
constexpr uint8_t QOSCNV_TYPE_QUEUING = 2; // scheduling: bandwidth, priority
constexpr uint8_t QOSCNV_TYPE_UF = 4;      // unified fabric, written as "type network-qos"

// qos-groups of class-maps; user classes of the system policy have 2 to 5.
constexpr uint8_t qos_group_class_default = 0;
constexpr uint8_t qos_group_class_fcoe = 1;
constexpr uint8_t qos_group_first_user = 2;
constexpr uint8_t qos_group_last_user = 5;
constexpr uint8_t qos_group_unassigned = 255;

// Words of the type with the bits QOSCNV_TYPE_QUEUING (2) or QOSCNV_TYPE_UF (4).
const char *qoscnv_type_words(uint8_t type);

// Length of a text as the engine counts.
constexpr uint32_t length(std::string_view text) { return static_cast<uint32_t>(text.size()); }

// ---- Where things end ----
//
// The end of the text ends every line, body and stanza, but it does not begin one.

position qoscnv_end_of_text(position from);
// Start of the next line, else the end of the text.
position qoscnv_line_after(position cp);
// Start of the next stanza, else the end of the text.
position qoscnv_stanza_after(position cp);
// True while the line at `cp` belongs to the body of the current stanza.
bool qoscnv_in_body(position cp);
// True at the end of the text.
bool qoscnv_text_ended(position cp);
// First line at or after `cp` that is not empty.
position qoscnv_past_empty_lines(position cp);
// Start of the next stanza behind the last of `headers` with that ending, where that lies behind
// the first byte of the QoS section; else nowhere. A header that begins with a newline stands at
// line starts only. So the section's first class-map does not count: a text with no other has
// nothing to go behind.
position qoscnv_behind_last_stanza(engine::last_hits_t &headers, size_t ending = 0);

// ---- Reading ----

// The line at `cp` as its copy: at most 199 characters.
std::string qoscnv_linebuf(position cp);

// Refuses a text of more than `most` characters: logs "Unexpected text: %s\n" with its first 199
// and returns false.
bool qoscnv_fits(const char *pass, std::string_view text, uint32_t most = engine::area_length);
// The same for the words of a scan.
bool qoscnv_words_fit(const char *pass, const words_t &words);
// The same for the body line at `cp`, which must fit with its newline.
bool qoscnv_body_line_fits(const char *pass, position cp);

bool qoscnv_is_class_line(std::string_view line);

// ---- Writing ----

// Inserts a composed text at `at`, which moves behind it. Returns false, with a message, when the
// text does not fit its area or the insertion was refused.
[[nodiscard]] bool qoscnv_write(const char *pass, position &at, const std::string &composed);
// The same in the place of the `size` bytes at `at`, which hold no zero byte.
[[nodiscard]] bool qoscnv_overwrite(const char *pass, position &at, uint32_t size,
                                    const std::string &composed);

// ---- The MTU rule ----
//
// Typed releases count 38 bytes less than the older ones. On the way up a value is lowered by that,
// to no less than 1500; on the way down it is raised, to no more than 9216. 9216 stays.

// The text behind the first "mtu" of an action, or null when there is none.
const char *qoscnv_behind_mtu(const char *action);
// The number at the start of `behind_mtu` converted, as the line "    mtu %d\n"; empty when there
// is no number: the action then stays as it is.
std::string qoscnv_convert_mtu(const char *behind_mtu, bool upgrade);
