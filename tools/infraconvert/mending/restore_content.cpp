// What is attached nowhere, and so gives no row: class-maps, policy-maps and their lines, as the
// original has them, in the form of the target.

#include "mending/restore.h"

#include "meaning/mtu.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning;

namespace {

class content_restorer_t {
  public:
    content_restorer_t(const scene_t &looked_at, const difference_t &told)
        : scene(looked_at), difference(told) {}

    candidate_t run() {
        for (const class_map_t &map : scene.before.class_maps) {
            if (concerns(map))
                restore(map);
        }
        for (const policy_t &policy : scene.before.policies) {
            for (const class_t &each : policy.classes)
                restore(policy, each);
            if (policy.classes.empty() && is_told(policy.headers))
                block(commands, "policy-map " + type_words(policy_type(policy.type)) +
                                    std::string(policy.name));
        }
        for (const attachment_t &attachment : scene.before.attachments) {
            if (is_told({attachment.line}))
                attach(attachment);
        }
        define_classes();
        remove_new();
        return {why_not.empty() ? commands : commands_t(), why_not};
    }

  private:
    bool is_told(const std::vector<uint32_t> &lines) const {
        return std::any_of(lines.begin(), lines.end(), [&](uint32_t line) {
            return std::binary_search(difference.before.begin(), difference.before.end(), line);
        });
    }

    bool is_new(const std::vector<uint32_t> &lines) const {
        return std::any_of(lines.begin(), lines.end(), [&](uint32_t line) {
            return std::binary_search(difference.after.begin(), difference.after.end(), line);
        });
    }

    bool concerns(const class_map_t &map) const {
        return is_told(map.headers) ||
               std::any_of(map.matches.begin(), map.matches.end(),
                           [&](const criterion_t &match) { return is_told({match.line}); });
    }

    // The type that a map of the original has in the target.
    std::string_view policy_type(std::string_view type) const {
        return !scene.typed() && type != types::control_plane ? types::none
               : type.empty()                                 ? types::qos
                                                              : type;
    }

    void restore(const class_map_t &map) {
        if (map.type == types::control_plane && !scene.after.dialect.control_plane) {
            why_not = "the target release has no control-plane maps";
            return;
        }
        const std::string name(map.name);
        const std::string header = class_map_header(scene, policy_type(map.type), name);
        if (header.empty()) {
            why_not = "the target release has no match-all, which class-map " + name + " needs";
            return;
        }
        block(commands, header);
        for (const criterion_t &match : map.matches)
            add_line(commands, header, "  match " + match.text);
        if (!scene.typed())
            return;
        for (const group_t &group : map.groups)
            add_line(commands, header, "  match qos-group " + group.number);
    }

    void restore(const policy_t &policy, const class_t &from) {
        const bool whole = is_told(policy.headers);
        for (const action_t &action : from.actions) {
            if (!whole && !is_told({action.line}))
                continue;
            const std::string_view type = type_of(policy.type, action.kind);
            std::string text = action.text;
            if (action.mtu)
                text =
                    "mtu " +
                    std::to_string(
                        expected_mtu(*action.mtu, scene.before.release, scene.after.release).value);
            add_action(commands, "policy-map " + type_words(type) + std::string(policy.name),
                       "  class " + type_words(type == types::control_plane ? types::none : type) +
                           std::string(from.name),
                       {"    " + text});
        }
        if (whole && from.actions.empty())
            add_line(commands,
                     "policy-map " + type_words(policy_type(policy.type)) +
                         std::string(policy.name),
                     "  class " + type_words(policy_type(policy.type)) + std::string(from.name));
    }

    std::string_view type_of(std::string_view type, action_kind_t kind) const {
        if (!type.empty() || !scene.typed())
            return policy_type(type);
        return kind == action_kind_t::scheduling ? types::queuing
               : kind == action_kind_t::network  ? types::network
                                                 : types::qos;
    }

    void attach(const attachment_t &attachment) {
        const bool system = attachment.kind == place_kind_t::system;
        const std::string direction =
            !scene.typed() && system
                ? ""
                : std::string(attachment.direction.empty() && attachment.type != types::network
                                  ? "input"
                                  : attachment.direction);
        const std::string_view type = policy_type(attachment.type);
        const std::string name(attachment.name);
        if (!scene.after.policy(type, attachment.name) && scene.before.policy_of(attachment))
            block(commands, "policy-map " + type_words(type) + name);
        add_line(commands, system ? "system qos" : attachment.place,
                 "  service-policy " + type_words(type) + direction +
                     (direction.empty() ? "" : " ") + name);
    }

    // A class that the target refuses without a class-map gets one, which matches what it did.
    void define_classes() {
        for (const policy_t &policy : scene.after.policies) {
            for (const class_t &each : policy.classes) {
                if (!is_new(each.lines) || is_predefined(each.name) ||
                    scene.after.class_map(policy.type, each.name))
                    continue;
                const std::string name(each.name);
                const std::string header = class_map_header(scene, policy.type, name);
                if (header.empty())
                    continue;
                block(commands, header);
                if (const class_map_t *known = scene.before.class_map(policy.type, name)) {
                    for (const group_t &group : known->groups)
                        add_line(commands, header, "  match qos-group " + group.number);
                }
                if (policy.type != types::queuing && policy.type != types::network) {
                    for (const std::string &line : match_lines(scene, name))
                        add_line(commands, header, line);
                }
            }
        }
    }

    // What the original does not have: maps, actions, attachments.
    void remove_new() {
        for (const policy_t &policy : scene.after.policies) {
            const std::string header =
                "policy-map " + type_words(policy.type) + std::string(policy.name);
            if (is_new(policy.headers)) {
                remove_stanza(commands, header);
                continue;
            }
            for (const class_t &each : policy.classes) {
                for (const action_t &action : each.actions) {
                    if (is_new({action.line}))
                        add_action(commands, header,
                                   "  class " + type_words(policy.type) + std::string(each.name),
                                   {"    " + action.text, true});
                }
            }
        }
        for (const attachment_t &each : scene.after.attachments) {
            if (is_new({each.line}))
                remove_line(commands, each.kind == place_kind_t::system ? "system qos" : each.place,
                            "  service-policy " + type_words(each.type) +
                                std::string(each.direction) + (each.direction.empty() ? "" : " ") +
                                std::string(each.name));
        }
    }

    const scene_t &scene;
    const difference_t &difference;
    commands_t commands;
    std::string why_not;
};

} // namespace

candidate_t restored_content(const scene_t &scene, const difference_t &difference) {
    return content_restorer_t(scene, difference).run();
}

} // namespace infraconvert::mending
