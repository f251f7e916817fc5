// A plain reading of a configuration, for judging a conversion. It shares nothing with the
// converters: what they overlook must not be overlooked here for the same reason.
#pragma once

#include "base/lines.h"

#include <string>
#include <string_view>
#include <vector>

namespace infraconvert {

using words_t = std::vector<std::string_view>;
words_t split_words(std::string_view line);

// The line without its newline and the blanks around it.
std::string_view trimmed(std::string_view line);

// True for the first line of a stanza of VLANs by their numbers.
bool is_vlan_list(std::string_view header);

// Line numbers count from 0 in what follows.
struct stanza_t {
    size_t first, end; // the first line, and the one behind the last
};

// The lines of a text and the stanzas that they form: a stanza starts at a line whose first byte is
// a letter. Lines ahead of the first stanza form one without a header.
struct document_t {
    explicit document_t(std::string_view text); // which must outlive the object

    bool has_header(const stanza_t &stanza) const;
    // The first line, without newline and blanks; empty without a header.
    std::string_view header(const stanza_t &stanza) const;

    lines_t lines;
    std::vector<stanza_t> stanzas;
};

struct body_line_t {
    size_t line;
    std::string text; // trimmed
};

struct class_t {
    size_t line;
    std::string type, name; // type: "" for none
    std::vector<body_line_t> actions;
};

struct map_t {
    bool is_class_map;
    std::string type, name;
    std::vector<std::string> criteria; // "match-any" and the like, in front of the name
    stanza_t stanza;
    std::vector<body_line_t> descriptions;
    std::vector<body_line_t> matches; // of a class-map: every other line of its body
    std::vector<class_t> classes;     // of a policy-map

    // The keyword, the type and the name.
    std::string title() const;
};

struct attachment_t {
    size_t line;
    std::string place; // header of the stanza that holds it
    std::string type, direction, name;

    bool on_system() const { return place == "system qos"; }
    std::string title() const;
};

struct qos_t {
    std::vector<map_t> maps;
    std::vector<attachment_t> attachments;

    // The first map of these; null when there is none. Any type will do for `type` null.
    const map_t *find(bool class_map, const std::string *type, const std::string &name) const;
};
qos_t read_qos(const document_t &document);

} // namespace infraconvert
