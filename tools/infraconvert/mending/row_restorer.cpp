// What the lines of both forms share: policy-maps, class-maps, attachments.

#include "mending/row_restorer.h"

#include "meaning/mtu.h"

#include <algorithm>
#include <cstdlib>

namespace infraconvert::mending {

using namespace meaning;

namespace {

std::string place_header(const row_t &row) {
    return row.place == "system" ? "system qos" : row.place;
}

} // namespace

row_restorer_t::row_restorer_t(const scene_t &looked_at, names_t takes)
    : scene(looked_at), names(takes), apart(takes == names_t::unique) {
    for (const row_t &row : scene.effects_before) {
        if (row.effect.starts_with(in_group))
            taken.insert(atoi(row.effect.c_str() + in_group.size()));
    }
}

void row_restorer_t::lose(const row_t &row) {
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

void row_restorer_t::restore(const row_t &row) {
    if (row.is_marking())
        return restore_marking(row);
    if (row.place == "control-plane" || row.type == types::control_plane)
        return restore_control_plane(row);
    scene.typed() ? restore_typed(row) : restore_untyped(row);
}

std::optional<attachment_t> row_restorer_t::attachment_at(uint32_t line) const {
    for (const attachment_t &each : scene.after.attachments) {
        if (each.line == line)
            return each;
    }
    return {};
}

std::string row_restorer_t::attachment_words(const attachment_t &attachment) {
    return "service-policy " + type_words(attachment.type) +
           (attachment.direction.empty() ? "" : std::string(attachment.direction) + ' ') +
           std::string(attachment.name);
}

std::string row_restorer_t::class_line(std::string_view type, std::string_view name) {
    return "  class " + type_words(type) + std::string(name);
}

// What the row's action is called in the target.
std::string row_restorer_t::action_of(const row_t &row) const {
    if (row.mtu)
        return "    mtu " +
               std::to_string(
                   expected_mtu(*row.mtu, scene.before.release, scene.after.release).value);
    return "    " + row.effect;
}

// The policy-map of this type that is in force at the row's place, else one of the row's name.
std::string row_restorer_t::policy_for(const row_t &row, std::string_view type,
                                       std::string_view direction) {
    for (const attachment_t &each : scene.after.attachments) {
        if (each.place == row.place && each.type == type &&
            (direction.empty() || each.direction.empty() || each.direction == direction) && !apart)
            return std::string(each.name);
    }
    return name_for(row);
}

// Another name than the row's own where that would be shared.
std::string row_restorer_t::name_for(const row_t &row) const {
    if (names == names_t::same)
        return row.policy;
    std::string name = row.policy + "-" + (row.place == "system" ? "system" : row.direction);
    while (names == names_t::unique && has_policy(name))
        name += "-2";
    return name;
}

bool row_restorer_t::has_policy(std::string_view name) const {
    return std::any_of(scene.after.policies.begin(), scene.after.policies.end(),
                       [&](const policy_t &policy) { return policy.name == name; });
}

// A class-map that gives exactly this traffic to a class; makes one where there is none.
std::string row_restorer_t::class_for(std::string_view type, const row_t &row) {
    if (is_predefined(row.traffic))
        return row.traffic;
    if (in_words(traffic_of(scene.after, type, row.class_name)) == row.traffic)
        return row.class_name;
    for (const class_map_t &map : scene.after.class_maps) {
        if (map.type == type && in_words(traffic_of(scene.after, type, map.name)) == row.traffic)
            return std::string(map.name);
    }
    for (const class_map_t &map : scene.before.class_maps) {
        const std::string words = in_words(traffic_of(scene.before, map.type, map.name));
        if (words == row.traffic && !scene.after.class_map(type, map.name))
            return make_class_map(type, std::string(map.name));
    }
    return make_joint_class_map(type, row);
}

std::string row_restorer_t::make_class_map(std::string_view type, const std::string &name) {
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
std::string row_restorer_t::make_joint_class_map(std::string_view type, const row_t &row) {
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
        if (criterion.starts_with(in_group))
            why_not = "class " + row.class_name + " matches " + std::string(criterion) +
                      " in the original, which a class-map of the target release cannot";
        add_line(commands, header, "  match " + std::string(criterion));
        rest.remove_prefix(at == rest.npos ? rest.size() : at + 4);
    }
    return name;
}

void row_restorer_t::attach(const row_t &row, const std::string &words) {
    for (const attachment_t &each : scene.after.attachments) {
        if (each.place == row.place && attachment_words(each) == words)
            return;
    }
    add_line(commands, place_header(row), "  " + words);
}

void row_restorer_t::restore_marking(const row_t &row) {
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

void row_restorer_t::restore_control_plane(const row_t &row) {
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

} // namespace infraconvert::mending
