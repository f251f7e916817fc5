// Class-maps and policy-maps of the original against those of the result, by their names.

#include "audit/checks.h"

#include <algorithm>
#include <map>
#include <set>

namespace infraconvert {

namespace {

using texts_t = std::set<std::string>;

constexpr const char *control_plane = "control-plane";

bool is_group_match(const std::string &line) { return line.starts_with("match qos-group"); }

// The name under which the maps of both texts belong together: without the type where it changes.
struct map_key_t {
    bool is_class_map;
    std::string type, name;
    auto operator<=>(const map_key_t &) const = default; // NOLINT(modernize-use-nullptr)
};

struct merged_t {
    std::vector<const map_t *> stanzas;
    texts_t matches, descriptions;
    size_t most = 0; // stanzas of one type
};

using maps_t = std::map<map_key_t, merged_t>;

maps_t merge(const qos_t &qos, bool changes_form) {
    maps_t maps;
    std::map<map_key_t, size_t> count;
    for (const map_t &map : qos.maps) {
        merged_t &merged = maps[{map.is_class_map, changes_form ? "" : map.type, map.name}];
        merged.stanzas.push_back(&map);
        merged.most = std::max(merged.most, ++count[{map.is_class_map, map.type, map.name}]);
        for (const body_line_t &line : map.matches) {
            if (!changes_form || !is_group_match(line.text))
                merged.matches.insert(line.text);
        }
        for (const body_line_t &line : map.descriptions)
            merged.descriptions.insert(line.text);
    }
    return maps;
}

audit_t::numbers_t headers(const merged_t &merged) {
    audit_t::numbers_t numbers;
    for (const map_t *map : merged.stanzas)
        numbers.push_back(map->stanza.first);
    return numbers;
}

void tell_vanished(audit_t &audit, const map_key_t &key, const merged_t &before) {
    const std::string &title = before.stanzas[0]->title();
    if (before.stanzas[0]->type == control_plane)
        audit.add("IC027", title, headers(before), {});
    else if (!key.is_class_map)
        audit.add("IC021", title, headers(before), {});
    else
        audit.add(before.matches.empty() ? finding_code_t("IC026") : finding_code_t("IC020"), title,
                  headers(before), {});
}

std::string difference_of(const texts_t &before, const texts_t &after) {
    std::string text;
    for (const std::string &line : before) {
        if (!after.contains(line))
            text += (text.empty() ? "lost \"" : "; lost \"") + line + '"';
    }
    for (const std::string &line : after) {
        if (!before.contains(line))
            text += (text.empty() ? "gained \"" : "; gained \"") + line + '"';
    }
    return text;
}

void compare(audit_t &audit, const map_key_t &key, const merged_t &before, const merged_t &after) {
    if (key.is_class_map && before.matches != after.matches)
        audit.add("IC023", difference_of(before.matches, after.matches), headers(before),
                  headers(after));
    if (after.most > before.most)
        audit.add("IC022", after.stanzas[0]->title(), headers(before), headers(after));
    for (const map_t *map : before.stanzas) {
        for (const body_line_t &line : map->descriptions) {
            if (!after.descriptions.contains(line.text))
                audit.add("IC025", map->title(), {line.line}, {});
        }
    }
}

bool contradicts(const map_t &map) {
    return std::set(map.criteria.begin(), map.criteria.end()).size() > 1;
}

void check_criteria(audit_t &audit) {
    for (const map_t &map : audit.qos_after.maps) {
        if (!contradicts(map))
            continue;
        const map_t *old = audit.qos_before.find(true, nullptr, map.name);
        if (!old || !contradicts(*old))
            audit.add("IC024", "", {}, {map.stanza.first});
    }
}

constexpr release_numbers_t release_match_any = {5, 0, 2, 0, 0};

void check_match_any(audit_t &audit) {
    if (audit.from < release_match_any || audit.to >= release_match_any)
        return;
    for (const map_t &map : audit.qos_after.maps) {
        const auto &words = map.criteria;
        const bool qos = map.type.empty() || map.type == "qos";
        if (map.is_class_map && qos &&
            std::find(words.begin(), words.end(), "match-any") != words.end())
            audit.add("IC046", "", {}, {map.stanza.first});
    }
}

} // namespace

void check_maps(audit_t &audit) {
    if (!audit.ran("qos"))
        return;
    const bool changes_form = audit.becomes_typed() || audit.becomes_untyped();
    const maps_t before = merge(audit.qos_before, changes_form);
    const maps_t after = merge(audit.qos_after, changes_form);
    for (const auto &[key, merged] : before) {
        const auto found = after.find(key);
        if (found == after.end())
            tell_vanished(audit, key, merged);
        else
            compare(audit, key, merged, found->second);
    }
    check_criteria(audit);
    check_match_any(audit);
}

} // namespace infraconvert
