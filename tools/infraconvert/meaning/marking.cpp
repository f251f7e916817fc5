// Marking at interfaces: whose queue the traffic joins.

#include "meaning/effects.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

// Calls `each` with the class and the action for every "set qos-group" of the policy.
template<typename visit_t> void for_each_group(const policy_t &policy, visit_t each) {
    for (const class_t &from : policy.classes) {
        for (const action_t &action : from.actions) {
            if (action.kind == action_kind_t::group)
                each(from, action);
        }
    }
}

const policy_t *system_policy(const model_t &model, std::string_view type) {
    const attachment_t *attachment = model.attached("system", type);
    return attachment ? model.policy(type, attachment->name) : nullptr;
}

bool has_fixed_group(std::string_view class_name) {
    return class_name == classes::rest || class_name == classes::fcoe;
}

bool sets_a_group(const class_t &from) {
    return std::any_of(from.actions.begin(), from.actions.end(),
                       [](const auto &a) { return a.kind == action_kind_t::group; });
}

} // namespace

system_marking_t::system_marking_t(const model_t &read_model, std::string_view type)
    : model(read_model), policy(system_policy(model, type)),
      groups(model, type == types::qos ? policy : nullptr) {
    if (policy)
        read(*policy);
}

void system_marking_t::read(const policy_t &system) {
    for_each_group(system, [&](const class_t &from, const action_t &action) {
        setting.try_emplace(action.group(), &from);
    });
    for (const class_t &from : system.classes) {
        const traffic_t own = traffic_of(model, system.type, from.name);
        traffic.insert(own);
        const bool in_group = sets_a_group(from) || system.type == types::none;
        if (in_group && !has_fixed_group(from.name) && !own.empty())
            grouped.insert(own);
    }
}

// The traffic that a number has on the system of an untyped configuration.
traffic_t system_marking_t::untyped_group(std::string_view number, const traffic_t &own) const {
    if (number == "0" || number == "1")
        return {std::string(number == "0" ? classes::rest : classes::fcoe)};
    if (const auto known = setting.find(number); known != setting.end())
        return traffic_of(model, types::none, known->second->name);
    return traffic.contains(own) ? own : traffic_t();
}

bool system_marking_t::repeats(const policy_t &own, const std::vector<mark_t> &marks) const {
    if (!policy)
        return false;
    if (policy == &own)
        return true;
    std::set<traffic_t> marked;
    for (const mark_t &mark : marks) {
        if (mark.traffic != mark.joins)
            return false;
        marked.insert(mark.traffic);
    }
    return std::includes(marked.begin(), marked.end(), grouped.begin(), grouped.end());
}

std::vector<mark_t> system_marking_t::marks(const policy_t &own) const {
    std::vector<mark_t> marks;
    for_each_group(own, [&](const class_t &from, const action_t &action) {
        traffic_t met = traffic_of(model, own.type, from.name);
        if (met.empty())
            return;
        traffic_t joins =
            own.type == types::qos ? groups.of(action.group()) : untyped_group(action.group(), met);
        marks.push_back({&from, &action, std::move(met), std::move(joins)});
    });
    if (repeats(own, marks))
        marks.clear();
    return marks;
}

} // namespace infraconvert::meaning
