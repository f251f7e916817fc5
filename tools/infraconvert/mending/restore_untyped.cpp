// Rows in the lines of releases before 4.1(3).

#include "mending/row_restorer.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning;

void row_restorer_t::restore_untyped(const row_t &row) {
    const bool system = row.place == "system";
    if (system && !row.direction.empty() && !both_directions(row) && !was_there(row)) {
        why_not = alike;
        return;
    }
    const std::string policy = policy_for(row, types::none, system ? "" : row.direction);
    add_action(commands, "policy-map " + policy,
               class_line(types::none, class_for(types::none, row)), {action_of(row)});
    attach(row, "service-policy " +
                    (system ? "" : (row.direction.empty() ? "input" : row.direction) + ' ') +
                    policy);
}

bool row_restorer_t::says_other_direction(const row_t &row) const {
    const table_t &table = scene.effects_before;
    return std::any_of(table.begin(), table.end(), [&](const row_t &other) {
        return other.place == row.place && other.traffic == row.traffic &&
               other.effect == row.effect && other.direction != row.direction;
    });
}

// The original says the same of the other direction.
bool row_restorer_t::both_directions(const row_t &row) const {
    const table_t &table = scene.effects_before;
    return std::count_if(table.begin(), table.end(), [&](const row_t &other) {
               return other.place == row.place && other.traffic == row.traffic &&
                      other.effect == row.effect;
           }) > 1;
}

bool row_restorer_t::was_there(const row_t &row) const {
    return scene.effects_had &&
           std::any_of(scene.effects_had->begin(), scene.effects_had->end(),
                       [&](const row_t &other) { return same_row(row, other); });
}

// Before 4.1(3) a class of the system's policy says the number; where none does, it is told to.
std::string row_restorer_t::untyped_group(const row_t &row) {
    if (!row.effect.starts_with(goes_with))
        return row.effect.substr(in_group.size());
    const std::string joins = row.effect.substr(goes_with.size());
    if (joins == classes::rest)
        return "0";
    if (joins == classes::fcoe)
        return "1";
    const attachment_t *system = scene.after.attached("system", types::none);
    const policy_t *policy = system ? scene.after.policy(types::none, system->name) : nullptr;
    for (const class_t &each : policy ? policy->classes : std::vector<class_t>()) {
        if (in_words(traffic_of(scene.after, types::none, each.name)) != joins)
            continue;
        for (const action_t &action : each.actions) {
            if (action.kind == action_kind_t::group)
                return std::string(action.group());
        }
        std::string number = original_number(row);
        add_action(commands, "policy-map " + std::string(policy->name),
                   class_line(types::none, each.name), {"    set qos-group " + number});
        return number;
    }
    return make_queue(row, joins, policy ? policy->name : "");
}

// A class of the system's policy that does nothing but say the number for this traffic.
std::string row_restorer_t::make_queue(const row_t &row, const std::string &joins,
                                       std::string_view policy_name) {
    const policy_t *original = policy_in_force(scene.before, "system");
    if (policy_name.empty() && original)
        policy_name = original->name;
    if (policy_name.empty())
        return "";
    row_t own = row;
    own.place = "system";
    own.traffic = joins;
    const std::string policy(policy_name);
    std::string number = original_number(row);
    add_action(commands, "policy-map " + policy,
               class_line(types::none, class_for(types::none, own)),
               {"    set qos-group " + number});
    attach(own, "service-policy " + policy);
    return number;
}

// The number that the row's action has in the original.
std::string row_restorer_t::original_number(const row_t &row) const {
    const policy_t *policy = scene.before.policy(row.type, row.policy);
    const class_t *in = policy ? policy->find(row.class_name) : nullptr;
    for (const action_t &action : in ? in->actions : std::vector<action_t>()) {
        if (action.kind == action_kind_t::group)
            return std::string(action.group());
    }
    return std::to_string(first_free_group);
}

} // namespace infraconvert::mending
