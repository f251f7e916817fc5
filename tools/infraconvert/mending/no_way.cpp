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

// Scheduling wants a group for the traffic, and where traffic is put into groups this is marking.
bool is_scheduled_beside_marking(const scene_t &scene, const row_change_t &change) {
    if (change.gained || scene.before.dialect.typed || !scene.typed() || change.row.is_marking() ||
        change.row.place == "system")
        return false;
    const table_t &table = scene.effects_before;
    const auto marks = [&](const row_t &row) {
        return row.place == change.row.place && row.is_marking();
    };
    return std::any_of(table.begin(), table.end(), marks) &&
           std::none_of(table.begin(), table.end(), [&](const row_t &row) {
               return marks(row) && row.traffic == change.row.traffic;
           });
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
        if (is_scheduled_beside_marking(scene, change))
            return "from 4.1(3) on scheduling needs a qos-group, and " + change.row.place +
                   " would mark " + change.row.traffic + " by it, which it does not";
    }
    if (const class_map_t *map = empty_class_map(scene.after, difference.after);
        map && difference.rows.empty())
        return "class " + std::string(map->name) +
               " gets no packets in the original, and the target release refuses it without a "
               "match line";
    return "";
}

} // namespace infraconvert::mending
