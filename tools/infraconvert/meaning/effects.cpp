// From attachments to rows.

#include "meaning/effects.h"

#include <algorithm>
#include <tuple>

namespace infraconvert::meaning {

namespace {

// Rows of one attachment.
struct writer_t {
    const attachment_t &attachment;
    const policy_t &policy;
    table_t &table;

    void add(std::string_view direction, const traffic_t &traffic, const class_t &from,
             const action_t &action, const std::string &effect) const {
        if (traffic.empty())
            return;
        table.push_back({.place = attachment.place,
                         .direction = std::string(direction),
                         .traffic = in_words(traffic),
                         .effect = effect,
                         .keyword = action.keyword,
                         .mtu = action.mtu,
                         .policy = std::string(policy.name),
                         .type = std::string(policy.type),
                         .class_name = std::string(from.name),
                         .attachment_line = attachment.line,
                         .class_line = from.lines.front(),
                         .action_line = action.line});
    }

    void add(const traffic_t &traffic, const class_t &from, const action_t &action) const {
        const bool system = attachment.kind == place_kind_t::system;
        const bool scheduling = action.kind == action_kind_t::scheduling;
        if (system && scheduling && policy.type == types::none) {
            add("input", traffic, from, action, action.text);
            add("output", traffic, from, action, action.text);
        } else if (system && !scheduling) {
            add("", traffic, from, action, action.text);
        } else {
            add(attachment.direction, traffic, from, action, action.text);
        }
    }
};

// ---- marking

// A class of an interface's policy, and the traffic that it shares a queue with.
struct mark_t {
    const class_t *from;
    const action_t *action;
    traffic_t traffic, joins; // `joins` is empty where nothing on the system has this number
};
using marks_t = std::vector<mark_t>;

// Calls `each` with the class and the action for every "set qos-group" of the policy.
template<typename visit_t> void for_each_group(const policy_t &policy, visit_t each) {
    for (const class_t &from : policy.classes) {
        for (const action_t &action : from.actions) {
            if (action.kind == action_kind_t::group)
                each(from, action);
        }
    }
}

marks_t marks_of(const model_t &model, const policy_t &policy) {
    marks_t marks;
    for_each_group(policy, [&](const class_t &from, const action_t &action) {
        traffic_t traffic = traffic_of(model, policy.type, from.name);
        if (!traffic.empty())
            marks.push_back({&from, &action, std::move(traffic), {}});
    });
    return marks;
}

const policy_t *system_policy(const model_t &model, std::string_view type) {
    const attachment_t *attachment = model.attached("system", type);
    return attachment ? model.policy(type, attachment->name) : nullptr;
}

// The traffic that `number` has on the system of an untyped configuration.
traffic_t untyped_group(const model_t &model, const policy_t *system, std::string_view number,
                        const traffic_t &own) {
    if (number == "0" || number == "1")
        return {std::string(number == "0" ? classes::rest : classes::fcoe)};
    if (!system)
        return {};
    const class_t *setting = nullptr;
    for_each_group(*system, [&](const class_t &from, const action_t &action) {
        if (!setting && action.group() == number)
            setting = &from;
    });
    if (setting)
        return traffic_of(model, types::none, setting->name);
    for (const class_t &from : system->classes) {
        if (traffic_of(model, types::none, from.name) == own)
            return own;
    }
    return {};
}

bool has_fixed_group(std::string_view class_name) {
    return class_name == classes::rest || class_name == classes::fcoe;
}

// The traffic of the classes that the system's policy puts into groups of their own.
std::vector<traffic_t> grouped_on_system(const model_t &model, const policy_t &system) {
    std::vector<traffic_t> grouped;
    for (const class_t &from : system.classes) {
        const bool sets = std::any_of(from.actions.begin(), from.actions.end(),
                                      [](const auto &a) { return a.kind == action_kind_t::group; });
        traffic_t traffic = traffic_of(model, system.type, from.name);
        if ((sets || system.type == types::none) && !has_fixed_group(from.name) && !traffic.empty())
            grouped.push_back(std::move(traffic));
    }
    return grouped;
}

// True when a policy at an interface puts all traffic where the system's puts it.
bool repeats_the_system(const model_t &model, const policy_t &policy, const policy_t *system,
                        const marks_t &marks) {
    if (!system)
        return false;
    if (system == &policy)
        return true;
    const bool all_stay = std::all_of(
        marks.begin(), marks.end(), [](const mark_t &mark) { return mark.traffic == mark.joins; });
    const auto grouped = grouped_on_system(model, *system);
    return all_stay && std::all_of(grouped.begin(), grouped.end(), [&](const traffic_t &traffic) {
               return std::any_of(marks.begin(), marks.end(),
                                  [&](const mark_t &mark) { return mark.traffic == traffic; });
           });
}

void add_marking(const model_t &model, const writer_t &writer) {
    const policy_t &policy = writer.policy;
    const policy_t *system = system_policy(model, policy.type);
    marks_t marks = marks_of(model, policy);
    const groups_t groups(model, policy.type == types::qos ? system : nullptr);
    for (mark_t &mark : marks) {
        const std::string_view number = mark.action->group();
        mark.joins = policy.type == types::qos ? groups.of(number)
                                               : untyped_group(model, system, number, mark.traffic);
    }
    if (repeats_the_system(model, policy, system, marks))
        return;
    for (const mark_t &mark : marks)
        writer.add("input", mark.traffic, *mark.from, *mark.action,
                   mark.joins.empty() ? "qos-group " + std::string(mark.action->group())
                                      : "goes with " + in_words(mark.joins));
}

// ---- one attachment

// True when a policy of this type can say such an action; another type's means nothing there.
bool says(std::string_view type, action_kind_t kind) {
    if (kind == action_kind_t::group)
        return false; // rows of its own
    if (kind == action_kind_t::other || type == types::none)
        return true;
    return type == (kind == action_kind_t::scheduling ? types::queuing : types::network);
}

void add_rows(const model_t &model, const writer_t &writer) {
    const policy_t &policy = writer.policy;
    const bool by_group = policy.type == types::queuing || policy.type == types::network;
    const groups_t groups(model,
                          by_group ? policy_in_force(model, writer.attachment.place) : nullptr);
    for (const class_t &from : policy.classes) {
        const traffic_t traffic = by_group ? queued_traffic(model, groups, policy.type, from.name)
                                           : traffic_of(model, policy.type, from.name);
        for (const action_t &action : from.actions) {
            if (says(policy.type, action.kind))
                writer.add(traffic, from, action);
        }
    }
    const bool marks = policy.type == types::none || policy.type == types::qos;
    if (marks && writer.attachment.kind == place_kind_t::interface)
        add_marking(model, writer);
}

auto key(const row_t &row) {
    return std::tie(row.place, row.direction, row.traffic, row.keyword, row.effect);
}

} // namespace

bool same_row(const row_t &one, const row_t &other) { return key(one) == key(other); }

std::string place_in_words(const row_t &row) {
    constexpr std::string_view interface = "interface ";
    std::string text =
        row.place.starts_with(interface) ? row.place.substr(interface.size()) : row.place;
    return row.direction.empty() ? text : text + ' ' + row.direction;
}

std::string in_words(const row_t &row) {
    return place_in_words(row) + ": " + row.effect + " for " + row.traffic;
}

table_t effects_of(const model_t &model) {
    table_t table;
    for (const attachment_t &attachment : model.attachments) {
        const std::string_view type =
            attachment.kind == place_kind_t::control_plane ? types::control_plane : attachment.type;
        if (const policy_t *policy = model.policy(type, attachment.name))
            add_rows(model, {attachment, *policy, table});
    }
    std::stable_sort(table.begin(), table.end(),
                     [](const row_t &a, const row_t &b) { return key(a) < key(b); });
    table.erase(std::unique(table.begin(), table.end(), same_row), table.end());
    return table;
}

} // namespace infraconvert::meaning
