// What gives no row, and must stay all the same: maps that are attached nowhere, actions that no
// traffic meets, attachments without an effect.

#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

using names_t = std::set<std::string, std::less<>>;

// What of a configuration stands in rows, and so need not be looked at here.
struct in_rows_t {
    explicit in_rows_t(const side_t &side) {
        for (const row_t &row : side.table) {
            actions.insert(row.action_line);
            attachments.insert(row.attachment_line);
            policies.insert(row.policy);
            classes.insert(row.class_name);
            if (row.type == types::queuing || row.type == types::network)
                add_classifiers(side.model, row);
        }
    }

    // The classes that put traffic into the groups of a queue.
    void add_classifiers(const model_t &model, const row_t &row) {
        const policy_t *policy = policy_in_force(model, row.place);
        const class_map_t *map = model.class_map(row.type, row.class_name);
        if (!policy || !map || !looked_at.insert({policy, map}).second)
            return;
        for (const class_t &each : policy->classes) {
            for (const action_t &action : each.actions) {
                const bool joins =
                    action.kind == action_kind_t::group &&
                    std::any_of(map->groups.begin(), map->groups.end(),
                                [&](const group_t &g) { return g.number == action.group(); });
                if (joins)
                    classes.insert(std::string(each.name));
            }
        }
    }

    std::set<uint32_t> actions, attachments;
    names_t policies, classes;
    std::set<std::pair<const policy_t *, const class_map_t *>> looked_at;
};

bool is_control_plane(std::string_view type) { return type == types::control_plane; }

class content_t {
  public:
    explicit content_t(comparison_t &compared)
        : comparison(compared), before(compared.before.model), after(compared.after.model),
          rows_before(compared.before), rows_after(compared.after) {}

    void run() {
        compare_policies();
        compare_actions();
        compare_class_maps();
        compare_attachments();
        compare_unattached_groups();
        compare_unattached_traffic();
        compare_descriptions();
        tell_control_plane();
    }

  private:
    // ---- policy-maps

    static bool has_policy(const model_t &model, std::string_view name) {
        return std::any_of(model.policies.begin(), model.policies.end(),
                           [&](const policy_t &policy) { return policy.name == name; });
    }

    // True when the map may go, because the target knows no control-plane policies.
    bool goes_with_control_plane(std::string_view type, uint32_t line) {
        if (!is_control_plane(type) || after.dialect.control_plane)
            return false;
        control_plane_lines.push_back(line);
        return true;
    }

    void compare_policies() {
        for (const policy_t &policy : before.policies) {
            if (has_policy(after, policy.name) || rows_before.policies.contains(policy.name) ||
                goes_with_control_plane(policy.type, policy.headers.front()))
                continue;
            comparison.add("IC021", weight_t::error,
                           "policy-map " + std::string(policy.name) + " is gone", {policy.headers},
                           {});
        }
        for (const policy_t &policy : after.policies) {
            if (!has_policy(before, policy.name) && !rows_after.policies.contains(policy.name))
                comparison.add("IC034", weight_t::error,
                               "policy-map " + std::string(policy.name) + " is new", {},
                               {policy.headers});
        }
    }

    // ---- actions

    // The action with this keyword in a class of this name, in whatever type of policy-map.
    static const action_t *find_action(const model_t &model, const policy_t &policy,
                                       const class_t &of, const action_t &wanted) {
        const action_t *found = nullptr;
        for (const policy_t &each : model.policies) {
            const class_t *same = each.name == policy.name ? each.find(of.name) : nullptr;
            if (!same)
                continue;
            for (const action_t &action : same->actions) {
                if (action.keyword == wanted.keyword && (!found || action.text == wanted.text))
                    found = &action;
            }
        }
        return found;
    }

    // Under whatever name: a policy-map with rows may be called otherwise, and a map of another
    // type that shares its name may not go with it in silence.
    bool stands_in_after(const class_t &of, const action_t &wanted) const {
        return std::any_of(after.policies.begin(), after.policies.end(), [&](const auto &policy) {
            const class_t *same = policy.find(of.name);
            return same && std::any_of(same->actions.begin(), same->actions.end(),
                                       [&](const action_t &action) {
                                           return action.keyword == wanted.keyword &&
                                                  (action.mtu || action.text == wanted.text);
                                       });
        });
    }

    template<typename visit_t>
    static void for_each_action(const model_t &model, const in_rows_t &rows, visit_t visit) {
        for (const policy_t &policy : model.policies) {
            for (const class_t &each : policy.classes) {
                for (const action_t &action : each.actions) {
                    if (action.kind != action_kind_t::group && !rows.actions.contains(action.line))
                        visit(policy, each, action);
                }
            }
        }
    }

    struct lines_of_class_t {
        std::vector<std::string> actions;
        lines_t lines;
    };
    using by_class_t = std::map<std::string, lines_of_class_t>;

    static std::string title(const policy_t &policy, const class_t &of) {
        return "policy-map " + std::string(policy.name) + ", class " + std::string(of.name);
    }

    void compare_actions() {
        by_class_t gone, added;
        for_each_action(
            before, rows_before, [&](const auto &policy, const auto &of, const auto &action) {
                const action_t *same = find_action(after, policy, of, action);
                if (same && action.mtu && same->mtu)
                    comparison.note_mtu(title(policy, of), {*action.mtu, action.line},
                                        {*same->mtu, same->line});
                else if ((!same || same->text != action.text) && has_policy(after, policy.name))
                    add(gone[title(policy, of)], action);
                else if (!same && !has_policy(after, policy.name) &&
                         !goes_with_control_plane(policy.type, action.line) &&
                         rows_before.policies.contains(policy.name) && !stands_in_after(of, action))
                    add(gone[title(policy, of)], action);
            });
        for_each_action(after, rows_after,
                        [&](const auto &policy, const auto &of, const auto &action) {
                            const action_t *same = find_action(before, policy, of, action);
                            const bool other =
                                !same || (same->text != action.text && !(same->mtu && action.mtu));
                            if (other && has_policy(before, policy.name))
                                add(added[title(policy, of)], action);
                        });
        tell("IC030", gone, "gone", true);
        tell("IC034", added, "new", false);
    }

    static void add(lines_of_class_t &to, const action_t &action) {
        to.actions.push_back(action.text);
        to.lines.push_back(action.line);
    }

    void tell(const char *code, const by_class_t &classes, const char *verb, bool of_original) {
        for (const auto &[where, found] : classes) {
            std::string actions;
            for (const std::string &action : found.actions)
                actions += (actions.empty() ? "" : ", ") + action;
            comparison.add(
                code, weight_t::error,
                where + ": " + actions + (found.actions.size() > 1 ? " are " : " is ") + verb,
                of_original ? found.lines : lines_t(), of_original ? lines_t() : found.lines);
        }
    }

    // ---- class-maps

    struct selected_t {
        std::vector<std::string> matches; // sorted
        bool all = false, has_groups = false;
        bool control_plane = true; // and of no other type
        lines_t lines;
    };
    using selections_t = std::map<std::string_view, selected_t>;

    static selections_t selections_of(const model_t &model) {
        selections_t selections;
        for (const class_map_t &map : model.class_maps) {
            selected_t &selected = selections[map.name];
            selected.lines.insert(selected.lines.end(), map.headers.begin(), map.headers.end());
            selected.has_groups = selected.has_groups || !map.groups.empty();
            selected.control_plane = selected.control_plane && is_control_plane(map.type);
            selected.all = selected.all || (map.all && map.matches.size() > 1);
            for (const criterion_t &criterion : map.matches) {
                selected.matches.push_back(criterion.text);
                selected.lines.push_back(criterion.line);
            }
        }
        for (auto &[name, selected] : selections) {
            auto &matches = selected.matches;
            std::sort(matches.begin(), matches.end());
            matches.erase(std::unique(matches.begin(), matches.end()), matches.end());
        }
        return selections;
    }

    void compare_class_maps() {
        const selections_t now = selections_of(after);
        for (const auto &[name, old] : selections_of(before)) {
            const auto same = now.find(name);
            const std::string map = "class-map " + std::string(name);
            if (same == now.end())
                tell_gone(map, name, old);
            else if (!rows_before.classes.contains(name) && !rows_after.classes.contains(name) &&
                     !comparison.is_told(name) &&
                     (same->second.matches != old.matches || same->second.all != old.all))
                comparison.add("IC023", weight_t::error, map + " has other match lines", old.lines,
                               same->second.lines);
        }
    }

    void tell_gone(const std::string &map, std::string_view name, const selected_t &old) {
        if (rows_before.classes.contains(name))
            return;
        if (old.control_plane && goes_with_control_plane(types::control_plane, old.lines.front()))
            return;
        const bool means =
            old.matches.empty() && comparison.before.is_typed() && !comparison.after.is_typed();
        comparison.add(means ? "IC026" : "IC020", means ? weight_t::warning : weight_t::error,
                       map + " is gone", old.lines, {});
    }

    // ---- attachments

    // A policy of the original that is attached without giving a row.
    bool is_still_attached(const attachment_t &old) const {
        return std::any_of(after.attachments.begin(), after.attachments.end(),
                           [&](const attachment_t &now) {
                               return now.place == old.place && now.name == old.name &&
                                      (comparison.crosses_models() ||
                                       (now.type == old.type && now.direction == old.direction));
                           });
    }

    static const policy_t *policy_of(const model_t &model, const attachment_t &attachment) {
        const bool plane = attachment.kind == place_kind_t::control_plane;
        return model.policy(plane ? types::control_plane : attachment.type, attachment.name);
    }

    // Attached to no effect in every form.
    static bool says_nothing(const model_t &model, const attachment_t &attachment) {
        const policy_t *policy = policy_of(model, attachment);
        return !policy || (attachment.type == types::network && !policy->has_actions());
    }

    void compare_attachments() {
        for (const attachment_t &old : before.attachments) {
            const bool only_groups = old.kind == place_kind_t::system && old.type == types::qos &&
                                     comparison.crosses_models();
            if (rows_before.attachments.contains(old.line) || only_groups ||
                says_nothing(before, old) || is_still_attached(old))
                continue;
            const bool marks = old.type == types::qos || old.type == types::none;
            comparison.add(marks ? "IC041" : "IC040", weight_t::error,
                           old.place + ": policy-map " + std::string(old.name) +
                               " is not attached any more",
                           {old.line}, {});
        }
        for (const attachment_t &now : after.attachments) {
            if (rows_after.attachments.contains(now.line) || now.type == types::qos ||
                says_nothing(after, now) || was_attached(now))
                continue;
            comparison.add("IC036", weight_t::error,
                           now.place + ": policy-map " + std::string(now.name) + " is attached", {},
                           {now.line});
        }
    }

    bool was_attached(const attachment_t &now) const {
        return std::any_of(before.attachments.begin(), before.attachments.end(),
                           [&](const attachment_t &old) {
                               return now.place == old.place && now.name == old.name &&
                                      (comparison.crosses_models() ||
                                       (now.type == old.type && now.direction == old.direction));
                           });
    }

    // ---- maps that are attached nowhere

    static bool is_attached(const model_t &model, const policy_t &policy) {
        return std::any_of(model.attachments.begin(), model.attachments.end(),
                           [&](const auto &each) { return policy_of(model, each) == &policy; });
    }

    void compare_unattached_groups() {
        lines_t lines;
        names_t policies;
        for (const policy_t &policy : before.policies) {
            if (is_attached(before, policy))
                continue;
            for (const class_t &each : policy.classes) {
                for (const action_t &action : each.actions) {
                    const action_t *same = find_action(after, policy, each, action);
                    if (action.kind != action_kind_t::group || (same && same->text == action.text))
                        continue;
                    lines.push_back(action.line);
                    policies.insert(std::string(policy.name));
                }
            }
        }
        if (!lines.empty())
            comparison.add("IC035", weight_t::warning,
                           "marking is gone from what is attached nowhere: policy-map " +
                               list(policies),
                           lines, {});
    }

    static std::string list(const names_t &names) {
        std::string text;
        for (const std::string &name : names)
            text += (text.empty() ? "" : ", ") + name;
        return text;
    }

    // The classes of unattached policies that have actions, and whether traffic would meet them.
    static std::map<std::string, std::pair<bool, uint32_t>>
    unattached_traffic(const model_t &model) {
        std::map<std::string, std::pair<bool, uint32_t>> found;
        const groups_t groups(model, policy_in_force(model, "system"));
        for (const policy_t &policy : model.policies) {
            const bool by_group = policy.type == types::queuing || policy.type == types::network;
            for (const class_t &each : policy.classes) {
                if (each.actions.empty() || is_attached(model, policy))
                    continue;
                const traffic_t traffic =
                    by_group ? queued_traffic(model, groups, policy.type, each.name)
                             : traffic_of(model, policy.type, each.name);
                auto &entry = found[title(policy, each)];
                entry.first = entry.first || !traffic.empty();
                entry.second = each.lines.front();
            }
        }
        return found;
    }

    void compare_unattached_traffic() {
        names_t classes;
        lines_t old_lines, lines;
        const auto now = unattached_traffic(after);
        for (const auto &[where, old] : unattached_traffic(before)) {
            const auto same = now.find(where);
            if (!old.first || same == now.end() || same->second.first)
                continue;
            classes.insert(where);
            old_lines.push_back(old.second);
            lines.push_back(same->second.second);
        }
        if (!classes.empty())
            comparison.add("IC049", weight_t::warning,
                           "no traffic would meet them any more: " + list(classes), old_lines,
                           lines);
    }

    // ---- told once

    void compare_descriptions() {
        lines_t lines;
        for (const description_t &old : before.descriptions) {
            const bool stays = std::any_of(
                after.descriptions.begin(), after.descriptions.end(),
                [&](const auto &now) { return now.owner == old.owner && now.text == old.text; });
            if (!stays)
                lines.push_back(old.line);
        }
        if (!lines.empty())
            comparison.add("IC025", weight_t::note, "descriptions in maps are gone", lines, {});
    }

    void tell_control_plane() {
        if (!control_plane_lines.empty())
            comparison.add("IC027", weight_t::warning,
                           "control-plane maps, which are attached nowhere, are gone",
                           control_plane_lines, {});
    }

    comparison_t &comparison;
    const model_t &before, &after;
    const in_rows_t rows_before, rows_after;
    lines_t control_plane_lines;
};

} // namespace

void compare_content(comparison_t &comparison) { content_t(comparison).run(); }

} // namespace infraconvert::meaning
