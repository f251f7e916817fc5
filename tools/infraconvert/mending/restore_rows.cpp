// Rows of the effect table, in the lines of the target:
//
//     lost: Ethernet1/1 input: cos 5 goes with cos 5
//
//     policy-map type qos campus-in            before 4.1(3):  policy-map campus-in
//       class type qos voice                                     class voice
//         set qos-group 2                                          set qos-group 2
//     interface Ethernet1/1                                    interface Ethernet1/1
//       service-policy type qos input campus-in                  service-policy input campus-in

#include "mending/restore.h"

#include "meaning/effects.h"
#include "meaning/mtu.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace infraconvert::mending {

using namespace meaning;

namespace {

constexpr int first_free_group = 2, last_free_group = 5;
constexpr const char *alike = "releases before 4.1(3) schedule the system's input and output alike";
constexpr std::string_view goes_with = "goes with ", in_group = "qos-group ";

std::string place_header(const row_t &row) {
    return row.place == "system" ? "system qos" : row.place;
}

class row_restorer_t {
  public:
    row_restorer_t(const scene_t &looked_at, names_t takes)
        : scene(looked_at), names(takes), apart(takes == names_t::unique) {
        for (const row_t &row : scene.effects_before) {
            if (row.effect.starts_with(in_group))
                taken.insert(atoi(row.effect.c_str() + in_group.size()));
        }
    }

    void lose(const row_t &row) { // one that the result has and the original has not
        const std::string map = "policy-map " + type_words(row.type) + row.policy;
        if (!scene.typed() && row.place == "system" && !row.direction.empty() &&
            says_other_direction(row))
            why_not = alike;
        const auto attachment = attachment_at(row.attachment_line);
        if (apart && attachment) {
            remove_line(commands, place_header(row), "  " + attachment_words(*attachment));
            return;
        }
        const policy_t *policy = scene.after.policy(row.type, row.policy);
        const class_t *in = policy ? policy->find(row.class_name) : nullptr;
        for (const action_t &action : in ? in->actions : std::vector<action_t>()) {
            if (action.keyword == row.keyword)
                add_action(commands, map, class_line(row.type, row.class_name),
                           {"    " + action.text, true});
        }
    }

    void restore(const row_t &row) {
        if (row.is_marking())
            return restore_marking(row);
        if (row.place == "control-plane" || row.type == types::control_plane)
            return restore_control_plane(row);
        scene.typed() ? restore_typed(row) : restore_untyped(row);
    }

    candidate_t result() { return {why_not.empty() ? commands : commands_t(), why_not}; }

  private:
    // ---- what both forms share

    std::optional<attachment_t> attachment_at(uint32_t line) const {
        for (const attachment_t &each : scene.after.attachments) {
            if (each.line == line)
                return each;
        }
        return {};
    }

    static std::string attachment_words(const attachment_t &attachment) {
        return "service-policy " + type_words(attachment.type) +
               (attachment.direction.empty() ? "" : std::string(attachment.direction) + ' ') +
               std::string(attachment.name);
    }

    static std::string class_line(std::string_view type, std::string_view name) {
        return "  class " + type_words(type) + std::string(name);
    }

    // What the row's action is called in the target.
    std::string action_of(const row_t &row) const {
        if (row.mtu)
            return "    mtu " +
                   std::to_string(
                       expected_mtu(*row.mtu, scene.before.release, scene.after.release).value);
        return "    " + row.effect;
    }

    // The policy-map of this type that is in force at the row's place, else one of the row's name.
    std::string policy_for(const row_t &row, std::string_view type, std::string_view direction) {
        for (const attachment_t &each : scene.after.attachments) {
            if (each.place == row.place && each.type == type &&
                (direction.empty() || each.direction.empty() || each.direction == direction) &&
                !apart)
                return std::string(each.name);
        }
        return name_for(row);
    }

    // Another name than the row's own where that would be shared.
    std::string name_for(const row_t &row) const {
        if (names == names_t::same)
            return row.policy;
        std::string name = row.policy + "-" + (row.place == "system" ? "system" : row.direction);
        while (names == names_t::unique && has_policy(name))
            name += "-2";
        return name;
    }

    bool has_policy(std::string_view name) const {
        return std::any_of(scene.after.policies.begin(), scene.after.policies.end(),
                           [&](const policy_t &policy) { return policy.name == name; });
    }

    // A class-map that gives exactly this traffic to a class; makes one where there is none.
    std::string class_for(std::string_view type, const row_t &row) {
        if (is_predefined(row.traffic))
            return row.traffic;
        if (in_words(traffic_of(scene.after, type, row.class_name)) == row.traffic)
            return row.class_name;
        for (const class_map_t &map : scene.after.class_maps) {
            if (map.type == type &&
                in_words(traffic_of(scene.after, type, map.name)) == row.traffic)
                return std::string(map.name);
        }
        for (const class_map_t &map : scene.before.class_maps) {
            const std::string words = in_words(traffic_of(scene.before, map.type, map.name));
            if (words == row.traffic && !scene.after.class_map(type, map.name))
                return make_class_map(type, std::string(map.name));
        }
        return make_joint_class_map(type, row);
    }

    std::string make_class_map(std::string_view type, const std::string &name) {
        const std::string header = class_map_header(scene, type, name);
        if (header.empty()) {
            why_not = "the target release has no match-all, which class-map " + name + " needs";
            return name;
        }
        block(commands, header);
        for (const std::string &line : match_lines(scene, name))
            add_line(commands, header, line);
        return name;
    }

    // Several classes shared a group; what has no groups needs one class for them together.
    std::string make_joint_class_map(std::string_view type, const row_t &row) {
        if (row.traffic.find(" and ") != row.traffic.npos) {
            why_not = "no class-map can say the traffic " + row.traffic;
            return row.class_name;
        }
        std::string name = row.class_name;
        while (scene.after.class_map(type, name))
            name += "-all";
        const std::string header = "class-map " + type_words(type) + name;
        block(commands, header);
        std::string_view rest = row.traffic;
        for (size_t at = 0; at != rest.npos;) {
            at = rest.find(" or ");
            const std::string_view criterion = rest.substr(0, at);
            if (is_predefined(criterion))
                why_not = "no class-map can match " + std::string(criterion) + " and more";
            add_line(commands, header, "  match " + std::string(criterion));
            rest.remove_prefix(at == rest.npos ? rest.size() : at + 4);
        }
        return name;
    }

    void attach(const row_t &row, const std::string &words) {
        for (const attachment_t &each : scene.after.attachments) {
            if (each.place == row.place && attachment_words(each) == words)
                return;
        }
        add_line(commands, place_header(row), "  " + words);
    }

    // ---- untyped

    void restore_untyped(const row_t &row) {
        const bool system = row.place == "system";
        if (system && !row.direction.empty() && !both_directions(row)) {
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

    bool says_other_direction(const row_t &row) const {
        const table_t &table = scene.effects_before;
        return std::any_of(table.begin(), table.end(), [&](const row_t &other) {
            return other.place == row.place && other.traffic == row.traffic &&
                   other.effect == row.effect && other.direction != row.direction;
        });
    }

    // The original says the same of the other direction.
    bool both_directions(const row_t &row) const {
        const table_t &table = scene.effects_before;
        return std::count_if(table.begin(), table.end(), [&](const row_t &other) {
                   return other.place == row.place && other.traffic == row.traffic &&
                          other.effect == row.effect;
               }) > 1;
    }

    // ---- typed

    void restore_typed(const row_t &row) {
        const bool scheduling = row.keyword == "bandwidth" || row.keyword == "priority";
        const bool network = row.keyword == "pause" || row.keyword == "mtu" ||
                             row.keyword == "multicast-optimize" || row.keyword == "queue-limit" ||
                             row.keyword == "set cos";
        if (!scheduling && !network) {
            why_not = "the target release has no " + row.keyword + " in such a policy-map";
            return;
        }
        if (network && row.place != "system") {
            why_not = "from 4.1(3) on " + row.keyword + " is the switch's, not an interface's";
            return;
        }
        const std::string_view type = scheduling ? types::queuing : types::network;
        const std::string policy = policy_for(row, type, scheduling ? row.direction : "");
        add_action(commands, "policy-map " + type_words(type) + policy,
                   class_line(type, queued_class(type, row)), {action_of(row)});
        attach(row, "service-policy " + type_words(type) + (scheduling ? row.direction + ' ' : "") +
                        policy);
    }

    // The class of a queuing or network-qos policy that gets this traffic at the row's place.
    std::string queued_class(std::string_view type, const row_t &row) {
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
    const policy_t *sorting_policy(const row_t &row) {
        if (const policy_t *in_force = policy_in_force(scene.after, row.place))
            return in_force;
        const policy_t *named = scene.after.policy(types::qos, row.policy);
        if (named && !is_predefined(row.traffic))
            add_line(commands, "system qos", "  service-policy type qos input " + row.policy);
        return named;
    }

    // A class-map that matches nothing yet is as good as none.
    bool is_used(std::string_view type, const std::string &name) const {
        const class_map_t *map = scene.after.class_map(type, name);
        return is_predefined(name) || (map && !map->groups.empty());
    }

    // The number that this traffic has, or gets, in the policy of type qos.
    std::string group_with(const groups_t &groups, const row_t &row) {
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

    void put_into_group(const row_t &row, int number) {
        const policy_t *in_force = policy_in_force(scene.after, row.place);
        const std::string policy = in_force ? std::string(in_force->name) : row.policy;
        add_action(commands, "policy-map type qos " + policy,
                   class_line(types::qos, class_for(types::qos, row)),
                   {"    set qos-group " + std::to_string(number)});
        if (!in_force)
            add_line(commands, "system qos", "  service-policy type qos input " + policy);
    }

    // ---- marking

    void restore_marking(const row_t &row) {
        const std::string number = scene.typed() ? typed_group(row) : untyped_group(row);
        if (number.empty()) {
            if (why_not.empty())
                why_not = "nothing on the system of the result has the queue that it joins";
            return;
        }
        const std::string_view type = scene.typed() ? types::qos : types::none;
        const std::string policy = policy_for(row, type, "input");
        add_action(commands, "policy-map " + type_words(type) + policy,
                   class_line(type, class_for(type, row)), {"    set qos-group " + number});
        attach(row, "service-policy " + type_words(type) + "input " + policy);
    }

    std::string typed_group(const row_t &row) const {
        if (!row.effect.starts_with(goes_with))
            return row.effect.substr(in_group.size());
        const std::string joins = row.effect.substr(goes_with.size());
        const groups_t groups(scene.after, policy_in_force(scene.after, "system"));
        for (int number = 0; number <= last_free_group; number++) {
            if (in_words(groups.of(std::to_string(number))) == joins)
                return std::to_string(number);
        }
        return "";
    }

    // Before 4.1(3) a class of the system's policy says the number; where none does, it is told to.
    std::string untyped_group(const row_t &row) {
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
            const std::string number = original_number(row);
            add_action(commands, "policy-map " + std::string(policy->name),
                       class_line(types::none, each.name), {"    set qos-group " + number});
            return number;
        }
        return "";
    }

    // The number that the row's action has in the original.
    std::string original_number(const row_t &row) const {
        const policy_t *policy = scene.before.policy(row.type, row.policy);
        const class_t *in = policy ? policy->find(row.class_name) : nullptr;
        for (const action_t &action : in ? in->actions : std::vector<action_t>()) {
            if (action.kind == action_kind_t::group)
                return std::string(action.group());
        }
        return std::to_string(first_free_group);
    }

    // ---- control-plane

    void restore_control_plane(const row_t &row) {
        if (!scene.after.dialect.control_plane) {
            why_not = "the target release has no control-plane policies";
            return;
        }
        const std::string name = class_for(types::control_plane, row);
        add_action(commands, "policy-map type control-plane " + row.policy, "  class " + name,
                   {action_of(row)});
        attach({.place = "control-plane",
                .direction = {},
                .traffic = {},
                .effect = {},
                .keyword = {},
                .policy = {},
                .type = {},
                .class_name = {}},
               "service-policy input " + row.policy);
    }

    const scene_t &scene;
    const names_t names;
    const bool apart; // from the policies that are attached
    commands_t commands;
    std::string why_not;
    std::set<int> taken; // also by traffic that goes into a group by its number
};

// Class-maps first, then policy-maps, then where they are attached.
void put_in_order(commands_t &commands) {
    const auto rank = [](const command_t &command) {
        return command.header.starts_with("class-map ")    ? 0
               : command.header.starts_with("policy-map ") ? 1
                                                           : 2;
    };
    std::stable_sort(commands.begin(), commands.end(),
                     [&](const auto &a, const auto &b) { return rank(a) < rank(b); });
}

candidate_t rows(const scene_t &scene, const difference_t &difference, names_t names) {
    row_restorer_t restorer(scene, names);
    for (const row_change_t &change : difference.rows) {
        if (change.gained)
            restorer.lose(change.row);
    }
    for (const row_change_t &change : difference.rows) {
        if (!change.gained)
            restorer.restore(change.row);
    }
    candidate_t candidate = restorer.result();
    put_in_order(candidate.commands);
    return candidate;
}

} // namespace

candidate_t restored_rows(const scene_t &scene, const difference_t &difference, names_t names) {
    return rows(scene, difference, names);
}

// The rows that an attachment of the original would give if the system's policy did not give the
// same: each class goes with what its number has on the system.
candidate_t restored_marking(const scene_t &scene, const attachment_t &attachment, names_t names) {
    const policy_t *policy = scene.before.policy(attachment.type, attachment.name);
    const groups_t groups(scene.before, policy_in_force(scene.before, "system"));
    row_restorer_t restorer(scene, names);
    for (const class_t &each : policy ? policy->classes : std::vector<class_t>()) {
        for (const action_t &action : each.actions) {
            if (action.kind != action_kind_t::group)
                continue;
            const std::string own = in_words(traffic_of(scene.before, attachment.type, each.name));
            const std::string joins =
                attachment.type == types::qos ? in_words(groups.of(action.group())) : own;
            restorer.restore({.place = attachment.place,
                              .direction = "input",
                              .traffic = own,
                              .effect = "goes with " + (joins.empty() ? own : joins),
                              .keyword = action.keyword,
                              .policy = std::string(policy->name),
                              .type = std::string(policy->type),
                              .class_name = std::string(each.name)});
        }
    }
    candidate_t candidate = restorer.result();
    put_in_order(candidate.commands);
    return candidate;
}

} // namespace infraconvert::mending
