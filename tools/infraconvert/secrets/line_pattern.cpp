#include "secrets/line_pattern.h"

#include <algorithm>
#include <cassert>

namespace infraconvert {

namespace {

// Calls visit for each token: a bracket, or what stands between brackets and blanks.
template<typename visit_t> void for_each_token(std::string_view text, visit_t visit) {
    constexpr std::string_view brackets = "[]{}", ends = " []{}";
    for (size_t at = 0; (at = text.find_first_not_of(' ', at)) != text.npos;) {
        const bool bracket = brackets.find(text[at]) != brackets.npos;
        const size_t end = bracket ? at + 1 : std::min(text.find_first_of(ends, at), text.size());
        visit(text.substr(at, end - at));
        at = end;
    }
}

} // namespace

line_pattern_t::line_pattern_t(std::string_view text) {
    std::vector<size_t> open;
    for_each_token(text, [&](std::string_view token) {
        if (token == "[" || token == "{") {
            open.push_back(nodes.size());
            nodes.push_back(
                {token == "[" ? node_t::kind_t::open_optional : node_t::kind_t::open_repeated});
        } else if (token == "]" || token == "}") {
            close_bracket(open);
        } else {
            add_word(token);
        }
    });
    assert(open.empty() && nodes.size() < 64);
}

void line_pattern_t::add_word(std::string_view token) {
    node_t node = {node_t::kind_t::word};
    while (!token.empty()) {
        const std::string_view word = token.substr(0, token.find('|'));
        token.remove_prefix(std::min(token.size(), word.size() + 1));
        if (word.starts_with('%'))
            node.alternatives.push_back({{}, word_shape_named(word.substr(1))});
        else
            node.alternatives.push_back({word, nullptr});
    }
    nodes.push_back(node);
}

void line_pattern_t::close_bracket(std::vector<size_t> &open) {
    assert(!open.empty());
    const size_t opening = open.back();
    open.pop_back();
    nodes[opening].other = nodes.size();
    const bool repeated = nodes[opening].kind == node_t::kind_t::open_repeated;
    nodes.push_back(
        {repeated ? node_t::kind_t::close_repeated : node_t::kind_t::close_optional, {}, opening});
}

// Adds the place and those that are reached from it without a word.
void line_pattern_t::enter(size_t place, places_t &places) const {
    if (places >> place & 1)
        return;
    places |= places_t{1} << place;
    if (place == nodes.size())
        return;
    const node_t &node = nodes[place];
    if (node.kind == node_t::kind_t::word)
        return;
    if (node.kind == node_t::kind_t::close_repeated)
        enter(node.other, places);
    else
        enter(place + 1, places);
    if (node.kind == node_t::kind_t::open_optional || node.kind == node_t::kind_t::open_repeated)
        enter(node.other + 1, places);
}

bool line_pattern_t::fits(const node_t &node, std::string_view word) {
    return std::any_of(
        node.alternatives.begin(), node.alternatives.end(), [&](const alternative_t &alternative) {
            return alternative.shape ? alternative.shape(word) : alternative.literal == word;
        });
}

line_pattern_t::places_t line_pattern_t::after_word(places_t places, std::string_view word) const {
    places_t next = 0;
    for (size_t place = 0; place < nodes.size(); place++) {
        if ((places >> place & 1) && nodes[place].kind == node_t::kind_t::word &&
            fits(nodes[place], word))
            enter(place + 1, next);
    }
    return next;
}

size_t line_pattern_t::fitting_words(std::span<const std::string_view> words) const {
    places_t places = 0;
    enter(0, places);
    size_t fitting = 0;
    for (size_t i = 0; i < words.size() && places != 0; i++) {
        places = after_word(places, words[i]);
        if (places >> nodes.size() & 1)
            fitting = i + 1;
    }
    return fitting;
}

std::vector<std::string_view> line_pattern_t::first_words() const {
    places_t places = 0;
    enter(0, places);
    std::vector<std::string_view> words;
    for (size_t place = 0; place < nodes.size(); place++) {
        if (!(places >> place & 1))
            continue;
        for (const alternative_t &alternative : nodes[place].alternatives) {
            if (alternative.shape)
                return {};
            words.push_back(alternative.literal);
        }
    }
    return words;
}

} // namespace infraconvert
