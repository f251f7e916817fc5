// Attachments that give no row, and policy-maps that are attached nowhere.

#include "meaning/content.h"

#include <map>

namespace infraconvert::meaning {

namespace {

// ---- attachments

// Across the models a policy is attached in other forms; within one the form must stay.
std::string key_of(const attachment_t &attachment, bool crosses) {
    const std::string key = place_key(attachment.place, attachment.name);
    return crosses ? key : place_key(place_key(key, attachment.type), attachment.direction);
}

std::unordered_set<std::string> keys_of(const model_t &model, bool crosses) {
    std::unordered_set<std::string> keys;
    for (const attachment_t &attachment : model.attachments)
        keys.insert(key_of(attachment, crosses));
    return keys;
}

// Attached to no effect in every form.
bool says_nothing(const model_t &model, const attachment_t &attachment, bool crosses) {
    const policy_t *policy = model.policy_of(attachment);
    return policy ? attachment.type == types::network && !policy->has_actions() : crosses;
}

std::string title(const attachment_t &attachment) {
    return attachment.place + ": policy-map " + std::string(attachment.name);
}

void tell_gone(content_t &content, const attachment_t &old) {
    const bool marks = old.type == types::qos || old.type == types::none;
    content.comparison.add(marks ? finding_code_t("IC041") : "IC040",
                           title(old) + " is not attached any more", {old.line}, {});
}

} // namespace

void compare_attachments(content_t &content) {
    const bool crosses = content.comparison.crosses_models();
    const auto now_attached = keys_of(content.after, crosses);
    for (const attachment_t &old : content.before.attachments) {
        const bool only_groups =
            crosses && old.kind == place_kind_t::system && old.type == types::qos;
        if (!content.rows_before.attachments.contains(old.line) && !only_groups &&
            !says_nothing(content.before, old, crosses) &&
            !now_attached.contains(key_of(old, crosses)))
            tell_gone(content, old);
    }
    const auto were_attached = keys_of(content.before, crosses);
    for (const attachment_t &now : content.after.attachments) {
        if (!content.rows_after.attachments.contains(now.line) && now.type != types::qos &&
            !says_nothing(content.after, now, crosses) &&
            !were_attached.contains(key_of(now, crosses)))
            content.comparison.add("IC036", title(now) + " is attached", {}, {now.line});
    }
}

namespace {

// ---- maps that are attached nowhere

void compare_groups_of_unattached(content_t &content) {
    lines_t lines;
    names_t policies;
    for (const policy_t &policy : content.before.policies) {
        if (content.before.is_attached(policy))
            continue;
        for (const class_t &each : policy.classes) {
            for (const action_t &action : each.actions) {
                if (action.kind != action_kind_t::group)
                    continue;
                const action_t *same = find_action(content.after, policy, each, action);
                if (same && same->text == action.text)
                    continue;
                lines.push_back(action.line);
                policies.insert(std::string(policy.name));
            }
        }
    }
    if (!lines.empty())
        content.comparison.add("IC035",
                               "marking is gone from what is attached nowhere: policy-map " +
                                   list_of(policies),
                               lines, {});
}

struct met_t {
    bool traffic = false; // would meet it
    uint32_t line = 0;
};

// The classes of unattached policies that have actions.
std::map<std::string, met_t> unattached_classes(const model_t &model) {
    std::map<std::string, met_t> found;
    const groups_t groups(model, policy_in_force(model, "system"));
    for (const policy_t &policy : model.policies) {
        if (model.is_attached(policy))
            continue;
        for (const class_t &each : policy.classes) {
            if (each.actions.empty())
                continue;
            const traffic_t traffic = is_by_group(policy.type)
                                          ? queued_traffic(model, groups, policy.type, each.name)
                                          : traffic_of(model, policy.type, each.name);
            met_t &met = found[title_of(policy, each)];
            met = {met.traffic || !traffic.empty(), each.lines.front()};
        }
    }
    return found;
}

void compare_traffic_of_unattached(content_t &content) {
    names_t classes;
    lines_t old_lines, lines;
    const auto now = unattached_classes(content.after);
    for (const auto &[where, old] : unattached_classes(content.before)) {
        const auto same = now.find(where);
        if (!old.traffic || same == now.end() || same->second.traffic)
            continue;
        classes.insert(where);
        old_lines.push_back(old.line);
        lines.push_back(same->second.line);
    }
    if (!classes.empty())
        content.comparison.add("IC049", "no traffic would meet them any more: " + list_of(classes),
                               old_lines, lines);
}

} // namespace

void compare_unattached(content_t &content) {
    compare_groups_of_unattached(content);
    compare_traffic_of_unattached(content);
}

} // namespace infraconvert::meaning
