// Maps as their first lines and their bodies have them: types, names, classes, actions, matches.

#include "meaning/form_parts.h"

#include <algorithm>

namespace infraconvert::meaning {

bool may_say(std::string_view type, action_kind_t kind) {
    if (type == types::none || kind == action_kind_t::other)
        return true;
    return type == (kind == action_kind_t::group        ? types::qos
                    : kind == action_kind_t::scheduling ? types::queuing
                                                        : types::network);
}

namespace {

// ---- first lines

// A typed map of whatever type is of the other model where there are no types.
void check_type(form_check_t &check, std::string_view type, const std::string &title,
                const std::vector<uint32_t> &headers, const problem_t::touched_t &touched) {
    if (check.knows_type(type))
        return;
    for (const uint32_t line : headers) {
        problem_t &problem = check.refuse_type(type, title, line, touched);
        problem.of_maps = problem.of_maps || type != types::control_plane || !check.reads.typed;
    }
}

void check_front_words(form_check_t &check) {
    for (const front_words_t &front : check.model.front_words) {
        const bool known = front.words[0] == "match-any" || front.words[0] == "match-all";
        if (front.words.size() == 1 && known && check.reads.front_word)
            continue;
        problem_t &problem =
            check.add(fault_t::front_words, title("class-map", "", front.name),
                      '"' + joined(front.words) + "\" in front of the name of a class-map",
                      front.line, {"", "", std::string(front.name)});
        problem.weight = std::max(problem.weight, front.words.size());
    }
}

} // namespace

void check_maps(form_check_t &check) {
    for (const class_map_t &map : check.model.class_maps)
        check_type(check, map.type, title("class-map", map.type, map.name), map.headers,
                   {"", "", std::string(map.name)});
    for (const policy_t &policy : check.model.policies)
        check_type(check, policy.type, title("policy-map", policy.type, policy.name),
                   policy.headers, {"", std::string(policy.name), ""});
    check_front_words(check);
}

namespace {

// ---- classes

bool matches_nothing(const class_map_t &map) {
    return map.groups.empty() && (is_by_group(map.type) || map.matches.empty());
}

void check_class(form_check_t &check, const policy_t &policy, const class_t &each) {
    if (is_predefined(each.name) || each.name.empty())
        return;
    const problem_t::touched_t touched = {"", std::string(policy.name), std::string(each.name)};
    const class_map_t *map = check.model.class_map(policy.type, each.name);
    const std::string name = title("class-map", policy.type, each.name);
    const std::string same = title("class-map", "", each.name);
    if (!map)
        for (const uint32_t line : each.lines)
            check.add(fault_t::class_without_map, same, "there is no " + name, line, touched);
    else if (matches_nothing(*map) && check.model.is_attached(policy))
        check.add(fault_t::empty_class_map, same,
                  name + " matches nothing, and policy-map " + std::string(policy.name) +
                      " uses it",
                  map->headers.front(), touched);
}

void check_actions(form_check_t &check, const policy_t &policy, const class_t &each) {
    for (const action_t &action : each.actions) {
        if (may_say(policy.type, action.kind))
            continue;
        const std::string where =
            title("policy-map", policy.type, policy.name) + ", class " + std::string(each.name);
        check.add(fault_t::action_of_other_type, where,
                  where + ": a policy-map of this type has no \"" + action.keyword + '"',
                  action.line, {"", std::string(policy.name), std::string(each.name)});
    }
}

// ---- matches

void check_matches(form_check_t &check, const class_map_t &map) {
    const std::string name = title("class-map", map.type, map.name);
    const problem_t::touched_t touched = {"", "", std::string(map.name)};
    // The same in both models: a class-map keeps its name.
    const std::string same = title("class-map", "", map.name);
    if (is_by_group(map.type)) {
        for (const criterion_t &criterion : map.matches)
            check.add(fault_t::match_of_other_type, same + ", criteria",
                      name + ": it can match qos-groups only", criterion.line, touched);
    } else {
        for (const group_t &group : map.groups)
            check.add(fault_t::match_of_other_type, same + ", groups",
                      name + ": it cannot match a qos-group", group.line, touched);
    }
}

} // namespace

void check_classes(form_check_t &check) {
    for (const policy_t &policy : check.model.policies) {
        for (const class_t &each : policy.classes)
            check_class(check, policy, each);
    }
    for (const policy_t &policy : check.model.policies) {
        for (const class_t &each : policy.classes)
            check_actions(check, policy, each);
    }
    for (const class_map_t &map : check.model.class_maps)
        check_matches(check, map);
}

} // namespace infraconvert::meaning
