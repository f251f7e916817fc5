#include "reports/effects_report.h"

#include "base/messages.h"
#include "reports/json_document.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace infraconvert {

namespace {

using meaning::change_t;
using json = nlohmann::ordered_json;

const char *change_name(change_t change) {
    constexpr const char *names[] = {"", "lost", "gained"};
    return names[static_cast<size_t>(change)];
}

// ---- places

// "Ethernet1/" and 12 of "Ethernet1/12".
struct numbered_t {
    std::string front;
    unsigned long number;
    bool has_number;

    auto operator<=>(const numbered_t &) const = default;
};

numbered_t numbered(const std::string &name) {
    constexpr size_t most_digits = 9;
    const size_t digits = name.find_last_not_of("0123456789") + 1;
    const size_t count = name.size() - digits;
    if (count == 0 || count > most_digits || (count > 1 && name[digits] == '0'))
        return {name, 0, false};
    return {name.substr(0, digits), std::stoul(name.substr(digits)), true};
}

// "Ethernet1/1-4, Ethernet1/7"; `names` in the order of their numbers.
std::string in_ranges(const std::vector<numbered_t> &names) {
    std::string text;
    for (size_t first = 0, next; first < names.size(); first = next) {
        const numbered_t &begin = names[first];
        for (next = first + 1; next < names.size() && begin.has_number; next++) {
            if (names[next] != numbered_t{begin.front, begin.number + (next - first), true})
                break;
        }
        text += (text.empty() ? "" : ", ") + begin.front;
        if (begin.has_number)
            text += std::to_string(begin.number);
        if (next - first > 1)
            text += '-' + std::to_string(names[next - 1].number);
    }
    return text;
}

// The switch first, then its ports.
size_t rank(const std::string &name) {
    return name == "system" ? 0 : name == "control-plane" ? 1 : 2;
}

// ---- the lines of a place

struct line_t {
    change_t change;
    std::string traffic, direction, effect;

    auto operator<=>(const line_t &) const = default;
};
using lines_of_place_t = std::vector<line_t>;

// Lines that differ in one word only become one with both words.
void join(lines_of_place_t &lines, std::string line_t::*word, const char *between) {
    lines_of_place_t joined;
    for (const line_t &line : lines) {
        const auto same = [&](line_t other) {
            other.*word = line.*word;
            return other == line;
        };
        const auto into = std::find_if(joined.begin(), joined.end(), same);
        if (into == joined.end())
            joined.push_back(line);
        else
            (*into).*word += between + line.*word;
    }
    lines = std::move(joined);
}

// What happens at a place, and the places where just this happens.
struct section_t {
    lines_of_place_t lines;
    std::vector<std::pair<size_t, numbered_t>> places;
};

std::vector<section_t> sections_of(const effects_t &rows) {
    std::map<std::string, lines_of_place_t> by_place;
    for (const auto &[row, change] : rows) {
        meaning::row_t place = row;
        place.direction.clear();
        by_place[place_in_words(place)].push_back({change, row.traffic, row.direction, row.effect});
    }
    std::vector<section_t> sections;
    for (auto &entry : by_place) {
        const auto &place = entry.first;
        auto &lines = entry.second;
        join(lines, &line_t::direction, " and ");
        join(lines, &line_t::effect, ", ");
        auto same = std::find_if(sections.begin(), sections.end(),
                                 [&](const section_t &s) { return s.lines == lines; });
        if (same == sections.end())
            same = sections.insert(same, {lines, {}});
        same->places.emplace_back(rank(place), numbered(place));
    }
    for (section_t &section : sections)
        std::sort(section.places.begin(), section.places.end());
    std::sort(sections.begin(), sections.end(), [](const section_t &a, const section_t &b) {
        return a.places.front() < b.places.front();
    });
    return sections;
}

// ---- text

struct widths_t {
    size_t change = 0, traffic = 0, direction = 0;
};

widths_t widths_of(const std::vector<section_t> &sections) {
    constexpr size_t gap = 2, most = 40; // what is wider stands out
    widths_t widths;
    const auto widen = [](size_t &width, const std::string &word) {
        if (!word.empty() && word.size() <= most)
            width = std::max(width, word.size() + gap);
    };
    for (const section_t &section : sections) {
        for (const line_t &line : section.lines) {
            widen(widths.change, change_name(line.change));
            widen(widths.traffic, line.traffic);
            widen(widths.direction, line.direction);
        }
    }
    return widths;
}

// A word that is wider than its column still keeps its distance.
std::string cell(const std::string &word, size_t width) {
    const size_t blanks = width > word.size() ? width - word.size() : 0;
    return word + std::string(blanks, ' ') + (blanks == 0 && width > 0 ? "  " : "");
}

std::string line_text(const line_t &line, const widths_t &widths) {
    return "  " + cell(change_name(line.change), widths.change) +
           cell(line.traffic, widths.traffic) + cell(line.direction, widths.direction) +
           line.effect + '\n';
}

} // namespace

std::string effects_text(const effects_t &rows) {
    const std::vector<section_t> sections = sections_of(rows);
    const widths_t widths = widths_of(sections);
    std::string text;
    for (const section_t &section : sections) {
        std::vector<numbered_t> names;
        for (const auto &[rank, name] : section.places)
            names.push_back(name);
        text += wrapped(in_ranges(names), 2) + '\n';
        for (const line_t &line : section.lines)
            text += line_text(line, widths);
    }
    return text;
}

nlohmann::ordered_json rows_json(const effects_t &rows) {
    json list = json::array();
    for (const auto &[row, change] : rows)
        list.push_back({{"place", row.place},
                        {"direction", or_null(row.direction)},
                        {"traffic", row.traffic},
                        {"effect", row.effect},
                        {"change", or_null(change_name(change))}});
    return list;
}

} // namespace infraconvert
