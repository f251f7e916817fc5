// Which traffic shares a qos-group on the system. Where a queue or a network-qos class names the
// group the rows tell; here it is about groups of which no policy says anything more.

#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

struct placed_t {
    std::string sharing; // the traffic in its group; empty: that of class-default
    uint32_t line;
};
using placed_by_traffic_t = std::map<std::string, placed_t>;

placed_by_traffic_t placed(const model_t &model) {
    placed_by_traffic_t placed;
    const policy_t *policy = policy_in_force(model, "system");
    if (!policy)
        return placed;
    const groups_t groups(model, policy);
    const traffic_t rest = {std::string(classes::rest)};
    for (const class_t &each : policy->classes) {
        for (const action_t &action : each.actions) {
            const traffic_t traffic = traffic_of(model, types::qos, each.name);
            if (action.kind != action_kind_t::group || traffic.empty() || traffic == rest)
                continue;
            const traffic_t &sharing = groups.of(action.group());
            const bool with_rest =
                std::find(sharing.begin(), sharing.end(), rest.front()) != sharing.end();
            placed[in_words(traffic)] = {with_rest ? "" : in_words(sharing), action.line};
        }
    }
    std::erase_if(placed, [](const auto &each) { return each.second.sharing.empty(); });
    return placed;
}

std::string group_in_words(const placed_by_traffic_t &placed, const std::string &traffic) {
    const auto found = placed.find(traffic);
    if (found == placed.end())
        return "that of class-default";
    return found->second.sharing == traffic ? "one of its own" : "that of " + found->second.sharing;
}

uint32_t line_of(const placed_by_traffic_t &placed, const std::string &traffic) {
    const auto found = placed.find(traffic);
    return found == placed.end() ? 0 : found->second.line;
}

void compare(comparison_t &comparison, const std::string &traffic, const placed_by_traffic_t &old,
             const placed_by_traffic_t &now) {
    const std::string was = group_in_words(old, traffic), is = group_in_words(now, traffic);
    if (was != is)
        comparison.add("IC059",
                       "system: the qos-group of " + traffic + " is " + is + " instead of " + was,
                       {line_of(old, traffic)}, {line_of(now, traffic)});
}

} // namespace

void compare_groups(comparison_t &comparison) {
    const auto &told = comparison.differences;
    const bool rows_differ =
        std::any_of(told.begin(), told.end(), [](const auto &d) { return !d.rows.empty(); });
    if (rows_differ || !comparison.before.is_typed() || !comparison.after.is_typed())
        return;
    const auto old = placed(comparison.before.model), now = placed(comparison.after.model);
    for (const auto &[traffic, group] : old)
        compare(comparison, traffic, old, now);
    for (const auto &[traffic, group] : now) {
        if (!old.contains(traffic))
            compare(comparison, traffic, old, now);
    }
}

} // namespace infraconvert::meaning
