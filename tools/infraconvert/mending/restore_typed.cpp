// Rows in the lines of releases from 4.1(3) on.

#include "mending/row_restorer.h"

namespace infraconvert::mending {

using namespace meaning;

void row_restorer_t::restore_typed(const row_t &row) {
    const bool scheduling = row.keyword == "bandwidth" || row.keyword == "priority";
    const bool network = row.keyword == "pause" || row.keyword == "mtu" ||
                         row.keyword == "multicast-optimize" || row.keyword == "queue-limit" ||
                         row.keyword == "set cos";
    if (!scheduling && !network)
        return restore_other(row);
    if (network && row.place != "system") {
        why_not = "from 4.1(3) on " + row.keyword + " is the switch's, not an interface's";
        return;
    }
    const std::string_view type = scheduling ? types::queuing : types::network;
    const std::string policy = policy_for(row, type, scheduling ? row.direction : "");
    add_action(commands, "policy-map " + type_words(type) + policy,
               class_line(type, queued_class(type, row)), {action_of(row)});
    attach(row,
           "service-policy " + type_words(type) + (scheduling ? row.direction + ' ' : "") + policy);
}

// What no other type knows as its own, "police" above all, stands beside the classification.
void row_restorer_t::restore_other(const row_t &row) {
    if (row.direction == "output") {
        why_not = "from 4.1(3) on " + row.keyword +
                  " stands in a policy-map of type qos, which is attached for input only";
        return;
    }
    const std::string policy = policy_for(row, types::qos, "input");
    add_action(commands, "policy-map type qos " + policy,
               class_line(types::qos, class_for(types::qos, row)), {action_of(row)});
    attach(row, "service-policy type qos input " + policy);
}

// The class of a queuing or network-qos policy that gets this traffic at the row's place.
std::string row_restorer_t::queued_class(std::string_view type, const row_t &row) {
    const groups_t groups(scene.after, sorting_policy(row));
    const auto gets = [&](std::string_view name) {
        return in_words(queued_traffic(scene.after, groups, type, name)) == row.traffic;
    };
    if (gets(row.class_name))
        return row.class_name;
    if (is_predefined(row.traffic) && gets(row.traffic))
        return row.traffic;
    for (const class_map_t &map : scene.after.class_maps) {
        if (map.type == type && gets(map.name))
            return std::string(map.name);
    }
    std::string name = row.class_name;
    while (is_used(type, name))
        name += "-own";
    const std::string header = "class-map " + type_words(type) + name;
    add_line(commands, header, "  match qos-group " + group_with(groups, row));
    return name;
}

// The policy that puts traffic into groups at the row's place. Where none is attached it is the
// one of the row's name, which is attached then.
const policy_t *row_restorer_t::sorting_policy(const row_t &row) {
    if (const policy_t *in_force = policy_in_force(scene.after, row.place))
        return in_force;
    const policy_t *named = scene.after.policy(types::qos, row.policy);
    if (named && !is_predefined(row.traffic))
        add_line(commands, "system qos", "  service-policy type qos input " + row.policy);
    return named;
}

// A class-map that matches nothing yet is as good as none.
bool row_restorer_t::is_used(std::string_view type, const std::string &name) const {
    const class_map_t *map = scene.after.class_map(type, name);
    return is_predefined(name) || (map && !map->groups.empty());
}

// The number that this traffic has, or gets, in the policy of type qos.
std::string row_restorer_t::group_with(const groups_t &groups, const row_t &row) {
    for (int number = 0; number <= last_free_group; number++) {
        if (in_words(groups.of(std::to_string(number))) == row.traffic)
            return std::to_string(number);
    }
    for (int number = first_free_group; number <= last_free_group; number++) {
        if (groups.of(std::to_string(number)).empty() && !taken.contains(number)) {
            taken.insert(number);
            put_into_group(row, number);
            return std::to_string(number);
        }
    }
    why_not = "all qos-groups are taken";
    return "";
}

void row_restorer_t::put_into_group(const row_t &row, int number) {
    const policy_t *in_force = policy_in_force(scene.after, row.place);
    const std::string policy = in_force ? std::string(in_force->name) : row.policy;
    add_action(commands, "policy-map type qos " + policy,
               class_line(types::qos, class_for(types::qos, row)),
               {"    set qos-group " + std::to_string(number)});
    if (!in_force)
        add_line(commands, "system qos", "  service-policy type qos input " + policy);
}

std::string row_restorer_t::typed_group(const row_t &row) {
    if (!row.effect.starts_with(goes_with))
        return row.effect.substr(in_group.size());
    const std::string joins = row.effect.substr(goes_with.size());
    const groups_t groups(scene.after, policy_in_force(scene.after, "system"));
    for (int number = 0; number <= last_free_group; number++) {
        if (in_words(groups.of(std::to_string(number))) == joins)
            return std::to_string(number);
    }
    row_t own = row;
    own.place = "system";
    own.traffic = joins;
    return group_with(groups, own);
}

} // namespace infraconvert::mending
