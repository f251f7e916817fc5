// Rows of the effect table, in the lines of the target:
//
//     lost: Ethernet1/1 input: cos 5 goes with cos 5
//
//     policy-map type qos campus-in            before 4.1(3):  policy-map campus-in
//       class type qos voice                                     class voice
//         set qos-group 2                                          set qos-group 2
//     interface Ethernet1/1                                    interface Ethernet1/1
//       service-policy type qos input campus-in                  service-policy input campus-in

#include "mending/row_restorer.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning;

namespace {

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
