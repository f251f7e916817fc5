#include "mending/saved_text.h"

#include "mending/line_words.h"

#include <algorithm>
#include <iterator>

namespace infraconvert::mending {

namespace {

// Takes the first line off a text, without its newline.
std::string_view take_line(std::string_view &text) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

// How much of a text stands ahead of the next line that starts a stanza.
size_t length_of_body(std::string_view text) {
    size_t at = 0;
    while (at < text.size() && !starts_stanza(text.substr(at)))
        at = std::min(text.find('\n', at), text.size() - 1) + 1;
    return at;
}

constexpr std::string_view system_qos = "system qos";

// The first word, or "system qos".
std::string_view kind_of(std::string_view header) {
    constexpr std::string_view blanks = " \t\r\v\f";
    const std::string_view word = header.substr(0, header.find_first_of(blanks));
    const bool is_qos = word == "system" && plain(header) == system_qos;
    return is_qos ? system_qos : word;
}

} // namespace

// ---- a stanza

body_t &saved_stanza_t::body() {
    while (!apart && !rest.empty())
        lines.push_back(take_line(rest));
    apart = true;
    return lines;
}

body_t::iterator saved_stanza_t::end_of_body() {
    auto end = body().end();
    while (end != lines.begin() && !means_something(*std::prev(end)))
        --end;
    return end;
}

void saved_stanza_t::append_to(std::string &text) const {
    if (!header.empty())
        (text += header) += '\n';
    text += rest;
    if (!rest.empty() && rest.back() != '\n')
        text += '\n';
    for (const std::string_view line : lines)
        (text += line) += '\n';
}

void saved_stanza_t::take_away() {
    const auto end = end_of_body();
    lines.erase(lines.begin(), end);
    header = {};
    gone = true;
}

// ---- the text

saved_text_t::saved_text_t(std::string_view text)
    : ends_with_newline(text.empty() || text.back() == '\n') {
    while (!text.empty()) {
        const std::string_view header = starts_stanza(text) ? take_line(text) : std::string_view();
        const size_t length = length_of_body(text);
        all.emplace_back(header, text.substr(0, length), all.size());
        text.remove_prefix(length);
        if (header.empty())
            continue;
        const auto stanza = std::prev(all.end());
        by_header[words_of(header)].push_back(stanza);
        by_kind[kind_of(header)].push_back(stanza);
    }
}

std::string_view saved_text_t::words_of(std::string_view header) {
    return is_plain(header) ? header : words.emplace_back(plain(header));
}

saved_text_t::stanzas_t saved_text_t::stanzas(const std::string &header) {
    stanzas_t found;
    const auto known = by_header.find(plain(header));
    if (known == by_header.end())
        return found;
    for (const auto &stanza : known->second) {
        if (!stanza->is_gone())
            found.push_back(&*stanza);
    }
    return found;
}

saved_text_t::list_t::iterator *saved_text_t::first_of(std::string_view kind) {
    places_t &known = by_kind[kind];
    while (!known.empty() && known.front()->is_gone())
        known.erase(known.begin());
    return known.empty() ? nullptr : &known.front();
}

saved_text_t::list_t::iterator *saved_text_t::last_of(std::string_view kind) {
    places_t &known = by_kind[kind];
    while (!known.empty() && known.back()->is_gone())
        known.pop_back();
    return known.empty() ? nullptr : &known.back();
}

// Of those that do not stand behind this one.
saved_text_t::list_t::iterator *saved_text_t::last_of(std::string_view kind, size_t most_order) {
    places_t &known = by_kind[kind];
    const auto found = std::find_if(known.rbegin(), known.rend(), [&](const auto &stanza) {
        return !stanza->is_gone() && stanza->order() <= most_order;
    });
    return found == known.rend() ? nullptr : &*found;
}

// Ahead of the comments behind that stanza.
saved_stanza_t &saved_text_t::add_behind(list_t::iterator at, std::string_view header) {
    const auto stanza = all.emplace(std::next(at), header, "", at->order());
    stanza->body().splice(stanza->body().end(), at->body(), at->end_of_body(), at->body().end());
    by_header[words_of(header)].push_back(stanza);
    by_kind[kind_of(header)].push_back(stanza);
    return *stanza;
}

saved_stanza_t &saved_text_t::add_ahead(list_t::iterator at, std::string_view header) {
    const size_t order = at == all.end() ? all.size() : at->order();
    const auto stanza = all.emplace(at, header, "", order);
    auto &same = by_header[words_of(header)];
    same.insert(same.begin(), stanza);
    auto &of_kind = by_kind[kind_of(header)];
    of_kind.insert(of_kind.begin(), stanza);
    return *stanza;
}

saved_stanza_t &saved_text_t::add(std::string_view header) {
    struct neighbour_t {
        std::string_view kind, other;
        bool behind;
    };
    // Of a kind that the text has none of yet.
    constexpr neighbour_t neighbours[] = {
        {"policy-map", "class-map", true},  {"policy-map", system_qos, false},
        {"policy-map", "interface", false}, {"class-map", "policy-map", false},
        {"class-map", system_qos, false},   {system_qos, "policy-map", true}};
    const std::string_view kind = kind_of(header);
    // A policy-map reads the class-maps ahead of it.
    const auto *reader = kind == "class-map" ? first_of("policy-map") : nullptr;
    if (const auto *last = reader ? last_of(kind, (*reader)->order()) : last_of(kind))
        return add_behind(*last, header);
    for (const neighbour_t &each : neighbours) {
        const auto *other = each.kind != kind ? nullptr
                            : each.behind     ? last_of(each.other)
                                              : first_of(each.other);
        if (other)
            return each.behind ? add_behind(*other, header) : add_ahead(*other, header);
    }
    return add_ahead(all.end(), header);
}

saved_stanza_t &saved_text_t::add_in_front(std::string_view header) {
    const auto *first = first_of(kind_of(header));
    return add_ahead(first ? *first : all.end(), header);
}

std::string saved_text_t::text() const {
    std::string text;
    for (const saved_stanza_t &stanza : all)
        stanza.append_to(text);
    if (!ends_with_newline && !text.empty())
        text.pop_back();
    return text;
}

} // namespace infraconvert::mending
