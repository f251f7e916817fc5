// Classes and actions of the policy-maps, by the names of policy and class, whatever type of map
// they stand in; and the values of their MTUs.

#include "audit/checks.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace infraconvert {

namespace {

constexpr std::string_view group_action = "set qos-group", mtu_action = "mtu ";
constexpr std::string_view control_plane = "control-plane";

bool is_group(const std::string &action) { return action.starts_with(group_action); }

// An MTU counts as an action whatever its value, which is compared by itself.
std::string comparable(const std::string &action) {
    return action.starts_with(mtu_action) ? "mtu" : action;
}

struct contents_t {
    size_t line = 0;                       // of the class
    std::map<std::string, size_t> actions; // comparable ones, and their lines
    std::map<std::string, size_t> groups;  // "set qos-group N"
    std::pair<long, size_t> mtu = {0, 0};  // the value that counts is the last; 0 for none
};

using classes_t = std::map<std::string, contents_t>;
using policies_t = std::map<std::string, classes_t>;

policies_t read_policies(const qos_t &qos) {
    policies_t policies;
    for (const map_t &map : qos.maps) {
        if (map.is_class_map || map.type == control_plane)
            continue;
        classes_t &classes = policies[map.name];
        for (const class_t &entry : map.classes) {
            contents_t &contents =
                classes.try_emplace(entry.name, contents_t{entry.line, {}, {}, {}}).first->second;
            for (const body_line_t &action : entry.actions) {
                auto &kind = is_group(action.text) ? contents.groups : contents.actions;
                kind.emplace(comparable(action.text), action.line);
                if (action.text.starts_with(mtu_action))
                    contents.mtu = {atol(action.text.c_str() + mtu_action.size()), action.line};
            }
        }
    }
    return policies;
}

bool is_system_policy(const qos_t &qos, const std::string &name) {
    return std::any_of(qos.attachments.begin(), qos.attachments.end(),
                       [&](const auto &a) { return a.on_system() && a.name == name; });
}

// Two classes of one name in policy-maps of one name; `after` is null when there is none.
struct pair_t {
    const std::string &policy, &name;
    const contents_t &before;
    const contents_t *after;

    std::string title() const { return "policy-map " + policy + ", class " + name; }
};

// True when the class is in a policy that is attached under "system qos".
bool is_system_class(const qos_t &qos, const std::string &name) {
    return std::any_of(qos.maps.begin(), qos.maps.end(), [&](const map_t &map) {
        return std::any_of(map.classes.begin(), map.classes.end(),
                           [&](const class_t &c) { return c.name == name; }) &&
               is_system_policy(qos, map.name);
    });
}

// True for a class that numbers itself under "system qos", so that its marking is not written: in
// the older form each that a policy there has, in the newer one two classes with fixed numbers.
bool numbers_itself(const audit_t &audit, const pair_t &pair) {
    return is_system_policy(audit.qos_before, pair.policy) &&
           (pair.name == "class-default" || pair.name == "class-fcoe" ||
            (audit.becomes_untyped() && is_system_class(audit.qos_after, pair.name)));
}

void compare_groups(audit_t &audit, const pair_t &pair) {
    const bool any_left = pair.after && !pair.after->groups.empty();
    for (const auto &[action, line] : pair.before.groups) {
        if (pair.after && pair.after->groups.contains(action))
            continue;
        if (any_left)
            audit.add("IC031", pair.title(), {line}, {pair.after->groups.begin()->second});
        else if (!numbers_itself(audit, pair))
            audit.add(audit.becomes_untyped() ? finding_code_t("IC032") : finding_code_t("IC030"),
                      pair.title(), {line}, {});
    }
    const bool given_here =
        audit.becomes_typed() && is_system_policy(audit.qos_before, pair.policy);
    if (!any_left || given_here)
        return;
    for (const auto &[action, line] : pair.after->groups) {
        if (pair.before.groups.empty())
            audit.add("IC034", pair.title(), {pair.before.line}, {line});
    }
}

void compare_actions(audit_t &audit, const pair_t &pair) {
    for (const auto &[action, line] : pair.before.actions) {
        if (!pair.after || !pair.after->actions.contains(action))
            audit.add("IC030", pair.title(), {line}, {});
    }
    const bool empty = pair.before.actions.empty() && pair.before.groups.empty();
    if (!pair.after && empty && pair.name != "class-default")
        audit.add("IC033", pair.title(), {pair.before.line}, {});
    if (!pair.after)
        return;
    for (const auto &[action, line] : pair.after->actions) {
        if (!pair.before.actions.contains(action))
            audit.add("IC034", pair.title(), {pair.before.line}, {line});
    }
}

template<typename visit_t>
void for_each_pair(const policies_t &before, const policies_t &after, visit_t visit) {
    for (const auto &[policy, classes] : before) {
        const auto found = after.find(policy);
        if (found == after.end())
            continue; // the policy-map vanished as a whole, which is told elsewhere
        for (const auto &[name, contents] : classes) {
            const auto same = found->second.find(name);
            visit(pair_t{policy, name, contents,
                         same == found->second.end() ? nullptr : &same->second});
        }
    }
}

void tell_new_classes(audit_t &audit, const policies_t &before, const policies_t &after) {
    for (const auto &[policy, classes] : after) {
        const auto old = before.find(policy);
        const std::string in_policy = "policy-map " + policy + ", class ";
        for (const auto &[name, contents] : classes) {
            if (old == before.end() || !old->second.contains(name))
                audit.add("IC034", in_policy + name, {}, {contents.line});
        }
    }
}

// ---- MTU

constexpr long overhead = 38, lowest = 1500, highest = 9216;

// How the conversion between the releases changes an MTU: -38, 38, or 0.
long shift_of(const audit_t &audit) {
    const auto base = [](release_numbers_t r) { return release_numbers_t{r[0], r[1], r[2], 0, 0}; };
    constexpr release_numbers_t single = {4, 2, 1, 0, 0};
    const bool goes_up = audit.from < audit.to;
    if (audit.becomes_typed() ||
        (goes_up && base(audit.from) == release_typed && audit.to >= single))
        return -overhead;
    return !goes_up && base(audit.to) == release_typed && audit.from >= single ? overhead : 0;
}

struct mtu_lines_t {
    std::vector<size_t> before, after;
};

void compare_mtu(audit_t &audit, const pair_t &pair,
                 std::map<std::string, mtu_lines_t> &converted) {
    if (!pair.after || pair.before.mtu.first == 0 || pair.after->mtu.first == 0)
        return;
    const auto [old_value, old_line] = pair.before.mtu;
    const auto [value, line] = pair.after->mtu;
    const long shifted = old_value + shift_of(audit);
    const long expected = old_value == highest ? highest : std::clamp(shifted, lowest, highest);
    if (shift_of(audit) == 0 || (value == old_value && value != expected)) {
        if (value != old_value)
            audit.add("IC053", pair.title(), {old_line}, {line});
        else if (value != highest && (shift_of(audit) != 0 || audit.becomes_untyped()))
            audit.add("IC051", pair.title(), {old_line}, {line});
    } else if (value != expected) {
        audit.add("IC053", pair.title() + ", expected " + std::to_string(expected), {old_line},
                  {line});
    } else if (value != old_value && value != shifted) {
        audit.add("IC052", pair.title(), {old_line}, {line});
    } else if (value != old_value) {
        converted[pair.policy].before.push_back(old_line);
        converted[pair.policy].after.push_back(line);
    }
}

} // namespace

void check_actions(audit_t &audit) {
    if (!audit.ran("qos"))
        return;
    const policies_t before = read_policies(audit.qos_before);
    const policies_t after = read_policies(audit.qos_after);
    for_each_pair(before, after, [&](const pair_t &pair) {
        compare_groups(audit, pair);
        compare_actions(audit, pair);
    });
    tell_new_classes(audit, before, after);
}

void check_mtu(audit_t &audit) {
    if (!audit.ran("qos"))
        return;
    std::map<std::string, mtu_lines_t> converted; // by policy
    for_each_pair(read_policies(audit.qos_before), read_policies(audit.qos_after),
                  [&](const pair_t &pair) { compare_mtu(audit, pair, converted); });
    for (auto &[policy, lines] : converted) {
        std::sort(lines.before.begin(), lines.before.end());
        std::sort(lines.after.begin(), lines.after.end());
        audit.add("IC050", "policy-map " + policy, lines.before, lines.after);
    }
}

} // namespace infraconvert
