#include "audit/stanzas.h"

#include <cctype>

namespace infraconvert {

namespace {

constexpr std::string_view blanks = " \t\r\n";

bool starts_stanza(std::string_view line) {
    return std::isalpha(static_cast<unsigned char>(line[0])) != 0;
}

bool is_indented(std::string_view line) { return line[0] == ' ' || line[0] == '\t'; }

// What follows the keyword of a map, a class or an attachment.
struct named_t {
    std::string type, name;
    std::vector<std::string> between;
};

named_t read_name(const words_t &words) {
    named_t named;
    size_t next = 1;
    if (words.size() > 2 && words[1] == "type") {
        named.type = words[2];
        next = 3;
    }
    if (words.size() > next)
        named.name = words.back();
    for (; next + 1 < words.size(); next++)
        named.between.emplace_back(words[next]);
    return named;
}

void read_body_line(map_t &map, size_t number, std::string_view line) {
    const words_t words = split_words(line);
    const body_line_t body = {number, std::string(trimmed(line))};
    if (words.empty() || !is_indented(line))
        return;
    if (words[0] == "description") {
        map.descriptions.push_back(body);
    } else if (map.is_class_map) {
        map.matches.push_back(body);
    } else if (words[0] == "class") {
        named_t named = read_name(words);
        map.classes.push_back({number, named.type, named.name, {}});
    } else if (!map.classes.empty()) {
        map.classes.back().actions.push_back(body);
    }
}

map_t read_map(const document_t &document, const stanza_t &stanza, const words_t &words) {
    named_t named = read_name(words);
    map_t map = {.is_class_map = words[0] == "class-map",
                 .type = named.type,
                 .name = named.name,
                 .criteria = named.between,
                 .stanza = stanza,
                 .descriptions = {},
                 .matches = {},
                 .classes = {}};
    for (size_t i = stanza.first + 1; i < stanza.end; i++)
        read_body_line(map, i, document.lines[i]);
    return map;
}

void read_attachments(const document_t &document, const stanza_t &stanza, qos_t &qos) {
    for (size_t i = stanza.first; i < stanza.end; i++) {
        const words_t words = split_words(document.lines[i]);
        if (words.empty() || words[0] != "service-policy")
            continue;
        named_t named = read_name(words);
        qos.attachments.push_back({i, std::string(document.header(stanza)), named.type,
                                   named.between.empty() ? "" : named.between[0], named.name});
    }
}

std::string joined(std::initializer_list<std::string_view> words) {
    std::string text;
    for (const std::string_view word : words) {
        if (!word.empty())
            (text += text.empty() ? "" : " ") += word;
    }
    return text;
}

} // namespace

words_t split_words(std::string_view line) {
    words_t words;
    for (size_t at = 0; (at = line.find_first_not_of(blanks, at)) != line.npos;) {
        const size_t end = std::min(line.find_first_of(blanks, at), line.size());
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

std::string_view trimmed(std::string_view line) {
    const size_t first = line.find_first_not_of(blanks);
    return first == line.npos ? std::string_view()
                              : line.substr(first, line.find_last_not_of(blanks) + 1 - first);
}

bool is_vlan_list(std::string_view header) {
    const words_t words = split_words(header);
    return words.size() > 1 && words[0] == "vlan" &&
           std::isdigit(static_cast<unsigned char>(words[1][0])) != 0;
}

document_t::document_t(std::string_view text) : lines(split_lines(text)) {
    for (size_t i = 0; i < lines.size(); i++) {
        if (i == 0 || starts_stanza(lines[i]))
            stanzas.push_back({i, i});
        stanzas.back().end = i + 1;
    }
}

bool document_t::has_header(const stanza_t &stanza) const {
    return starts_stanza(lines[stanza.first]);
}

std::string_view document_t::header(const stanza_t &stanza) const {
    return has_header(stanza) ? trimmed(lines[stanza.first]) : std::string_view();
}

std::string map_t::title() const {
    return joined(
        {is_class_map ? "class-map" : "policy-map", type.empty() ? "" : "type", type, name});
}

std::string attachment_t::title() const {
    return joined({"service-policy", type.empty() ? "" : "type", type, direction, name});
}

const map_t *qos_t::find(bool class_map, const std::string *type, const std::string &name) const {
    for (const map_t &map : maps) {
        if (map.is_class_map == class_map && map.name == name && (!type || map.type == *type))
            return &map;
    }
    return nullptr;
}

qos_t read_qos(const document_t &document) {
    qos_t qos;
    for (const stanza_t &stanza : document.stanzas) {
        const words_t words = split_words(document.header(stanza));
        if (!words.empty() && (words[0] == "class-map" || words[0] == "policy-map"))
            qos.maps.push_back(read_map(document, stanza, words));
        else
            read_attachments(document, stanza, qos);
    }
    return qos;
}

} // namespace infraconvert
