#include "meaning/row_words.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace infraconvert::meaning {

namespace {

std::string effect_in_words(const row_t &row) {
    if (!row.is_marking())
        return row.effect + " for " + row.traffic;
    const bool as_on_system = row.effect == "goes with " + row.traffic;
    return "marking of " + row.traffic + (as_on_system ? "" : " (" + row.effect + ')');
}

// A place and the directions in which something is said of it.
struct directions_t {
    std::string place; // in words
    std::vector<std::string> directions;
};

std::string plain_place(const row_t &row) {
    const std::string with_direction = place_in_words(row);
    return row.direction.empty()
               ? with_direction
               : with_direction.substr(0, with_direction.size() - row.direction.size() - 1);
}

} // namespace

std::string listed(const std::vector<std::string> &parts, const char *last, size_t most) {
    std::string text;
    for (size_t i = 0; i < std::min(parts.size(), most); i++)
        text += (i == 0 ? "" : i + 1 == parts.size() ? last : ", ") + parts[i];
    if (parts.size() > most)
        text += " and " + std::to_string(parts.size() - most) + " more";
    return text;
}

std::vector<std::string> places_in_words(const std::vector<const row_t *> &rows) {
    std::vector<directions_t> places;
    std::unordered_map<std::string_view, size_t> known;
    for (const row_t *row : rows) {
        const auto [at, is_new] = known.try_emplace(row->place, places.size());
        if (is_new)
            places.push_back({plain_place(*row), {}});
        auto &directions = places[at->second].directions;
        const bool told =
            std::find(directions.begin(), directions.end(), row->direction) != directions.end();
        if (!row->direction.empty() && !told)
            directions.push_back(row->direction);
    }
    std::vector<std::string> words;
    words.reserve(places.size());
    for (const auto &[place, directions] : places)
        words.push_back(place + (directions.empty() ? "" : " ") + listed(directions, " and ", 2));
    return words;
}

std::string rows_in_words(const std::vector<const row_t *> &rows, const char *verb) {
    constexpr size_t most_places = 3, most_effects = 4;
    std::map<std::string, std::vector<const row_t *>> by_effect;
    for (const row_t *row : rows)
        by_effect[effect_in_words(*row)].push_back(row);
    std::map<std::string, std::vector<std::string>> by_places;
    for (const auto &[effect, having] : by_effect)
        by_places[listed(places_in_words(having), " and ", most_places)].push_back(effect);
    std::string text;
    for (const auto &[places, effects] : by_places)
        text += (text.empty() ? "" : "; ") + places + ": " +
                listed(effects, " and ", most_effects) + (effects.size() > 1 ? " are " : " is ") +
                verb;
    return text;
}

} // namespace infraconvert::meaning
