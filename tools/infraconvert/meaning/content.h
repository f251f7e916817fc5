// What gives no row, and must stay all the same: maps that are attached nowhere, actions that no
// traffic meets, attachments without an effect. Each part looks at one kind of it.
#pragma once

#include "meaning/comparison.h"

namespace infraconvert::meaning {

using names_t = std::set<std::string, std::less<>>;

// What of a configuration stands in rows, and so need not be looked at here.
struct in_rows_t {
    explicit in_rows_t(const side_t &side);

    std::unordered_set<uint32_t> actions, attachments; // lines
    names_t policies;
    std::unordered_set<const policy_t *> having_rows; // among policies of one name
    names_t classes;                                  // that classify
    names_t queues;                                   // that name the groups of a queue

  private:
    void add_classifiers(const model_t &model, const row_t &row);
    std::set<std::pair<const policy_t *, const class_map_t *>> looked_at;
    std::unordered_map<const policy_t *,
                       std::unordered_map<std::string_view, std::vector<std::string_view>>>
        setting; // by policy of type qos: the classes that set each group
};

struct content_t {
    explicit content_t(comparison_t &compared);

    comparison_t &comparison;
    const model_t &before, &after;
    const in_rows_t rows_before, rows_after;
    lines_t control_plane_lines; // of maps that may go with their type

    // True when the map may go, because the target knows no control-plane policies.
    bool goes_with_control_plane(std::string_view type, uint32_t line);
};

// The action with this keyword in a class of this name, in a policy-map of this name and whatever
// type; the same action if there is one.
const action_t *find_action(const model_t &model, const policy_t &policy, const class_t &of,
                            const action_t &wanted);
// "policy-map lanes, class voice"
std::string title_of(const policy_t &policy, const class_t &of);
std::string list_of(const names_t &names);

void compare_policies(content_t &content);
void compare_actions(content_t &content);
void compare_class_maps(content_t &content);
void compare_attachments(content_t &content);
void compare_unattached(content_t &content);

} // namespace infraconvert::meaning
