#include "meaning/content.h"

namespace infraconvert::meaning {

in_rows_t::in_rows_t(const side_t &side) {
    for (const row_t &row : side.table) {
        actions.insert(row.action_line);
        attachments.insert(row.attachment_line);
        policies.insert(row.policy);
        having_rows.insert(side.model.policy(row.type, row.policy));
        const bool by_group = is_by_group(row.type);
        (by_group ? queues : classes).insert(row.class_name);
        if (by_group)
            add_classifiers(side.model, row);
    }
}

// The classes that put traffic into the groups of a queue.
void in_rows_t::add_classifiers(const model_t &model, const row_t &row) {
    const policy_t *policy = policy_in_force(model, row.place);
    const class_map_t *map = model.class_map(row.type, row.class_name);
    if (!policy || !map || !looked_at.insert({policy, map}).second)
        return;
    policies.insert(std::string(policy->name));
    const auto [known, is_new] = setting.try_emplace(policy);
    static const std::vector<class_t> none; // of the same kind, so that the names are not of a copy
    for (const class_t &each : is_new ? policy->classes : none) {
        for (const action_t &action : each.actions) {
            if (action.kind == action_kind_t::group)
                known->second[action.group()].push_back(each.name);
        }
    }
    for (const group_t &group : map->groups) {
        const auto found = known->second.find(group.number);
        if (found != known->second.end())
            classes.insert(found->second.begin(), found->second.end());
    }
}

content_t::content_t(comparison_t &compared)
    : comparison(compared), before(compared.before.model), after(compared.after.model),
      rows_before(compared.before), rows_after(compared.after) {}

bool content_t::goes_with_control_plane(std::string_view type, uint32_t line) {
    if (type != types::control_plane || after.dialect.control_plane)
        return false;
    control_plane_lines.push_back(line);
    return true;
}

const action_t *find_action(const model_t &model, const policy_t &policy, const class_t &of,
                            const action_t &wanted) {
    static const std::vector<action_t> none;
    const action_t *found = nullptr;
    for (const uint32_t named : model.policies_named(policy.name)) {
        const class_t *same = model.policies[named].find(of.name);
        for (const action_t &action : same ? same->actions : none) {
            if (action.keyword == wanted.keyword && (!found || action.text == wanted.text))
                found = &action;
        }
    }
    return found;
}

std::string title_of(const policy_t &policy, const class_t &of) {
    return "policy-map " + std::string(policy.name) + ", class " + std::string(of.name);
}

std::string list_of(const names_t &names) {
    std::string text;
    for (const std::string &name : names)
        (text += text.empty() ? "" : ", ") += name;
    return text;
}

namespace {

void compare_descriptions(content_t &content) {
    std::set<std::pair<std::string_view, std::string_view>> stay;
    for (const description_t &now : content.after.descriptions)
        stay.insert({now.owner, now.text});
    lines_t lines;
    for (const description_t &old : content.before.descriptions) {
        if (!stay.contains({old.owner, old.text}))
            lines.push_back(old.line);
    }
    if (!lines.empty())
        content.comparison.add("IC025", "descriptions in maps are gone", lines, {});
}

void tell_control_plane(content_t &content) {
    if (!content.control_plane_lines.empty())
        content.comparison.add("IC027", "control-plane maps, which are attached nowhere, are gone",
                               content.control_plane_lines, {});
}

} // namespace

void compare_content(comparison_t &comparison) {
    content_t content(comparison);
    for (const auto part :
         {compare_policies, compare_actions, compare_class_maps, compare_attachments,
          compare_unattached, compare_descriptions, tell_control_plane})
        part(content);
}

} // namespace infraconvert::meaning
