#include "meaning/abbreviations.h"

#include <algorithm>
#include <cctype>

namespace infraconvert::meaning {

namespace {

// A word and how much of it must be written, so that it cannot be another command.
struct keyword_t {
    std::string_view word = {};
    size_t least = 0;
};

// The words with which a command begins.
struct command_t {
    keyword_t words[3];
    size_t count() const { return words[2].least > 0 ? 3 : words[1].least > 0 ? 2 : 1; }
};

constexpr command_t of_first_lines[] = {
    {{{"class-map", 6}}},
    {{{"policy-map", 3}}},
    {{{"system", 3}, {"qos", 1}}},
    {{{"control-plane", 4}}},
    {{{"interface", 3}}},
    {{{"feature", 3}, {"npiv", 2}}},
    {{{"feature", 3}, {"fc-port-security", 4}}},
    {{{"feature", 3}, {"port-security", 6}}},
    {{{"npiv", 3}, {"enable", 1}}},
    {{{"port-security", 6}, {"enable", 1}}},
    {{{"port-security", 6}}},
    {{{"fc-port-security", 4}}},
    {{{"mac", 3}, {"address-table", 2}}},
    {{{"mac-address-table", 5}}},
};

constexpr command_t of_bodies[] = {
    {{{"service-policy", 3}}},
    {{{"fex", 3}, {"associate", 2}}},
    {{{"switchport", 2}, {"mode", 2}, {"fex-fabric", 1}}},
    {{{"fcoe", 3}}},
};

bool is_cut_from(std::string_view word, const keyword_t &keyword) {
    return word.size() >= keyword.least && keyword.word.starts_with(word);
}

bool begins(std::span<const std::string_view> words, const command_t &command) {
    return words.size() >= command.count() &&
           std::equal(words.begin(), words.begin() + static_cast<ptrdiff_t>(command.count()),
                      command.words, is_cut_from);
}

// "vl 10": a list behind it tells it from other commands.
bool is_vlan(std::span<const std::string_view> words) {
    return words.size() > 1 && is_cut_from(words[0], {"vlan", 2}) &&
           isdigit(static_cast<unsigned char>(words[1][0]));
}

} // namespace

words_t full_words(std::string_view line, position_t position) {
    words_t words = split_words(line);
    const size_t first = words[0] == "no" && words.size() > 1 ? 1 : 0;
    const auto command = std::span(words).subspan(first);
    if (position == position_t::first_line && is_vlan(command)) {
        command[0] = "vlan";
        return words;
    }
    const auto known = position == position_t::first_line
                           ? std::span<const command_t>(of_first_lines)
                           : std::span<const command_t>(of_bodies);
    for (const command_t &each : known) {
        if (!begins(command, each))
            continue;
        for (size_t i = 0; i < each.count(); i++)
            command[i] = each.words[i].word;
        break;
    }
    return words;
}

} // namespace infraconvert::meaning
