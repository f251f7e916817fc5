// Why there are no lines, where the releases themselves are the reason.

#include "mending/restore.h"

#include "meaning/effects.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning;

namespace {

constexpr std::string_view queued_types[] = {types::queuing, types::network};

// A class of the row's name and policy has packets at its place.
bool has_traffic(const model_t &model, const row_t &row) {
    if (!model.dialect.typed)
        return !traffic_of(model, types::none, row.class_name).empty();
    const groups_t groups(model, policy_in_force(model, row.place));
    return std::any_of(std::begin(queued_types), std::end(queued_types),
                       [&](std::string_view type) {
                           const policy_t *policy = model.policy(type, row.policy);
                           return policy && policy->find(row.class_name) &&
                                  !queued_traffic(model, groups, type, row.class_name).empty();
                       });
}

bool is_gained_by_name(const scene_t &scene, const row_change_t &change) {
    return change.gained && scene.before.dialect.typed && !scene.typed() &&
           scene.before.class_map(types::qos, change.row.class_name) &&
           !has_traffic(scene.before, change.row);
}

bool is_scheduling(const row_t &row) {
    return row.keyword == "bandwidth" || row.keyword == "priority";
}

// Maps with types can be written without types only as a whole.
const row_t *scheduled_one_way(const scene_t &scene) {
    const table_t &table = scene.effects_before;
    for (const row_t &row : table) {
        const bool both = std::any_of(table.begin(), table.end(), [&](const row_t &other) {
            return other.place == row.place && other.traffic == row.traffic &&
                   other.effect == row.effect && other.direction != row.direction;
        });
        if (row.place == "system" && is_scheduling(row) && !both)
            return &row;
    }
    return nullptr;
}

bool is_marked(const table_t &table, const std::string &place, const std::string &traffic) {
    return std::any_of(table.begin(), table.end(), [&](const row_t &row) {
        return row.place == place && row.is_marking() && row.traffic == traffic;
    });
}

bool has_marking(const table_t &table, const std::string &place) {
    return std::any_of(table.begin(), table.end(),
                       [&](const row_t &row) { return row.place == place && row.is_marking(); });
}

// Scheduling wants a group for the traffic, and where traffic is put into groups this is marking:
// what is scheduled at the place, but not marked there.
const row_t *scheduled_beside_marking(const scene_t &scene, const row_change_t &change) {
    const row_t &row = change.row;
    const table_t &table = scene.effects_before;
    if (change.gained || scene.before.dialect.typed || !scene.typed() || row.place == "system" ||
        !has_marking(table, row.place))
        return nullptr;
    for (const row_t &other : table) {
        const bool meant = row.is_marking() ? other.place == row.place && is_scheduling(other) &&
                                                  !is_predefined(other.traffic)
                                            : same_row(other, row);
        if (meant && !is_marked(table, row.place, other.traffic))
            return &other;
    }
    return nullptr;
}

// A class of the original that has no class-map, and says what is told.
std::string class_without_map(const model_t &model, const difference_t &difference) {
    for (const policy_t &policy : model.policies) {
        for (const class_t &each : policy.classes) {
            const bool told =
                std::any_of(each.actions.begin(), each.actions.end(), [&](const action_t &action) {
                    return std::binary_search(difference.before.begin(), difference.before.end(),
                                              action.line);
                });
            if (told && !is_predefined(each.name) && model.class_map_names.of(each.name).empty())
                return std::string(each.name);
        }
    }
    return "";
}

const class_map_t *empty_class_map(const model_t &model, const std::vector<uint32_t> &told) {
    for (const class_map_t &map : model.class_maps) {
        const bool here = std::any_of(map.headers.begin(), map.headers.end(), [&](uint32_t line) {
            return std::binary_search(told.begin(), told.end(), line);
        });
        if (here && map.matches.empty() && map.groups.empty())
            return &map;
    }
    return nullptr;
}

} // namespace

std::string no_way(const scene_t &scene, const difference_t &difference) {
    if (difference.code == "IC060" || difference.code == "IC061")
        return "the original is not in the form of its release; check --from";
    if (difference.code == "IC047")
        return "the target release has no control-plane policies";
    const auto &told = difference.after;
    if (difference.code == "IC046" && !scene.after.dialect.control_plane &&
        std::any_of(scene.after.class_maps.begin(), scene.after.class_maps.end(),
                    [&](const class_map_t &map) {
                        return map.type == types::control_plane &&
                               std::binary_search(told.begin(), told.end(), map.headers.front());
                    }))
        return "one of the class-maps is of a control-plane policy, which the target release has "
               "not";
    const auto fc = static_cast<size_t>(scene.after.dialect.fc_security);
    if (difference.code == "IC048" && fc == 1)
        return "the target release takes \"feature port-security\" for FC port security";
    if (std::string why = no_room(scene, difference); !why.empty())
        return why;
    for (const row_change_t &change : difference.rows) {
        if (is_gained_by_name(scene, change))
            return "before 4.1(3) a class has one class-map for all its policies, and " +
                   change.row.class_name + " has match lines by it";
    }
    for (const row_change_t &change : difference.rows) {
        if (const row_t *row = scheduled_beside_marking(scene, change))
            return "from 4.1(3) on scheduling needs a qos-group, and " + row->place +
                   " would mark " + row->traffic + " by it, which it does not";
    }
    const bool down = scene.before.dialect.typed && !scene.typed();
    if (const row_t *row = scheduled_one_way(scene); down && row && difference.code == "IC043")
        return "releases before 4.1(3) schedule the system's input and output alike, and the "
               "original has " +
               row->effect + " for " + row->traffic + " in one direction only";
    if (const std::string name = class_without_map(scene.before, difference); !name.empty())
        return "class " + name +
               " has no class-map in the original either, and the target release "
               "refuses it without one";
    if (const class_map_t *map = empty_class_map(scene.after, difference.after);
        map && difference.rows.empty())
        return "class " + std::string(map->name) +
               " gets no packets in the original, and the target release refuses it without a "
               "match line";
    return "";
}

} // namespace infraconvert::mending
