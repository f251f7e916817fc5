#include "mending/map_lines.h"

#include "mending/restore.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning;

namespace {

using names_t = std::set<std::string>;

names_t names_in(const model_t &model) {
    names_t names;
    for (const class_map_t &map : model.class_maps)
        names.insert("class-map " + std::string(map.name));
    for (const policy_t &policy : model.policies)
        names.insert("policy-map " + std::string(policy.name));
    return names;
}

names_t lines_in(const model_t &model) {
    names_t lines;
    for (const class_map_t &map : model.class_maps) {
        const std::string header = type_words(map.type) + std::string(map.name) + ": match ";
        for (const criterion_t &match : map.matches)
            lines.insert(header + match.text);
        for (const group_t &group : map.groups)
            lines.insert(header + "qos-group " + group.number);
    }
    for (const policy_t &policy : model.policies) {
        for (const class_t &each : policy.classes) {
            for (const action_t &action : each.actions)
                lines.insert(type_words(policy.type) + std::string(policy.name) + ", class " +
                             std::string(each.name) + ": " + action.text);
        }
    }
    return lines;
}

names_t orphans_in(const model_t &model) {
    names_t orphans;
    for (const policy_t &policy : model.policies) {
        for (const class_t &each : policy.classes) {
            if (!is_predefined(each.name) && !model.class_map(policy.type, each.name))
                orphans.insert(type_words(policy.type) + std::string(each.name));
        }
    }
    return orphans;
}

} // namespace

maps_t::maps_t(const model_t &original, const model_t &result)
    : names(names_in(result)), lines(lines_in(result)), orphans(orphans_in(result)) {
    const names_t own = names_in(original);
    std::set_difference(names.begin(), names.end(), own.begin(), own.end(),
                        std::inserter(foreign, foreign.end()));
}

bool maps_t::stands_for(const maps_t &other) const {
    return includes(names, other.names) && includes(lines, other.lines) &&
           includes(other.foreign, foreign);
}

bool maps_t::orphans_are_among(const maps_t &other) const {
    return includes(other.orphans, orphans);
}

} // namespace infraconvert::mending
