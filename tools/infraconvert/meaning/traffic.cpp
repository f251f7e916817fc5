// Which packets a class gets: by its own match lines, or through qos-groups.

#include "meaning/effects.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

constexpr std::string_view group_of_rest = "0", group_of_fcoe = "1";

void add_all(traffic_t &to, const traffic_t &from) {
    to.insert(to.end(), from.begin(), from.end());
    std::sort(to.begin(), to.end());
    to.erase(std::unique(to.begin(), to.end()), to.end());
}

std::string together(const traffic_t &criteria, const char *between) {
    std::string text;
    for (const std::string &criterion : criteria)
        (text += text.empty() ? "" : between) += criterion;
    return text;
}

traffic_t matched(const class_map_t &map) {
    traffic_t traffic;
    for (const criterion_t &criterion : map.matches)
        traffic.push_back(criterion.text);
    // Where the form does not allow it, a group is a criterion like any other.
    if (map.type == types::none || map.type == types::qos) {
        for (const group_t &group : map.groups)
            traffic.push_back("qos-group " + group.number);
    }
    std::sort(traffic.begin(), traffic.end());
    traffic.erase(std::unique(traffic.begin(), traffic.end()), traffic.end());
    if (map.all && traffic.size() > 1)
        traffic = {together(traffic, " and ")};
    return traffic;
}

} // namespace

std::string in_words(const traffic_t &traffic) { return together(traffic, " or "); }

traffic_t traffic_of(const model_t &model, std::string_view type, std::string_view class_name) {
    if (is_predefined(class_name))
        return {std::string(class_name)};
    const class_map_t *map = model.class_map(type, class_name);
    return map ? matched(*map) : traffic_t();
}

groups_t::groups_t(const model_t &model, const policy_t *policy) {
    static const std::vector<class_t> no_classes;
    for (const class_t &each : policy ? policy->classes : no_classes) {
        for (const action_t &action : each.actions) {
            if (action.kind != action_kind_t::group)
                continue;
            add_all(groups[action.group()], traffic_of(model, types::qos, each.name));
            set.insert(each.name);
        }
    }
    if (!sets(classes::rest))
        add_all(groups[group_of_rest], {std::string(classes::rest)});
    if (!sets(classes::fcoe))
        add_all(groups[group_of_fcoe], {std::string(classes::fcoe)});
}

const traffic_t &groups_t::of(std::string_view number) const {
    static const traffic_t nothing;
    const auto known = groups.find(number);
    return known == groups.end() ? nothing : known->second;
}

bool groups_t::sets(std::string_view class_name) const { return set.contains(class_name); }

const policy_t *policy_in_force(const model_t &model, std::string_view place) {
    const attachment_t *attachment = model.attached(place, types::qos);
    if (!attachment)
        attachment = model.attached("system", types::qos);
    return attachment ? model.policy(types::qos, attachment->name) : nullptr;
}

traffic_t queued_traffic(const model_t &model, const groups_t &groups, std::string_view type,
                         std::string_view class_name) {
    const class_map_t *map = model.class_map(type, class_name);
    if (map && !map->groups.empty()) {
        traffic_t traffic;
        for (const group_t &group : map->groups)
            add_all(traffic, groups.of(group.number));
        return traffic;
    }
    if (class_name == classes::rest)
        return groups.of(group_of_rest);
    if (class_name == classes::fcoe)
        return groups.of(group_of_fcoe);
    if (is_predefined(class_name) && !groups.sets(class_name))
        return {std::string(class_name)};
    return {};
}

} // namespace infraconvert::meaning
