#include "infraconvert/meaning/configurations.h"

#include "audit/audit.h"
#include "base/lines.h"
#include "support/golden.h"
#include "support/services.h"

#include <algorithm>

namespace meaning_test {

namespace {

struct class_t {
    std::string name, group;
    lines_t matches, scheduling, sizes; // match lines, and actions of type queuing and network-qos
};

const char *const match_lines[] = {"cos 1", "cos 2", "cos 4", "cos 5", "dscp 10", "dscp 46"};

std::vector<class_t> classes(chance_t &chance) {
    const char *const names[] = {"voice", "video", "bulk", "storage"};
    std::vector<class_t> all;
    const size_t count = 2 + chance.below(3);
    for (size_t i = 0; i < count; i++) {
        class_t each = {names[i], std::to_string(2 + i), {match_lines[i]}, {}, {}};
        if (chance.one_in(3))
            each.matches.emplace_back(match_lines[4 + i % 2]);
        if (!chance.one_in(4))
            each.scheduling.push_back(
                i == 0 ? "priority" : "bandwidth percent " + std::to_string(10 + chance.below(20)));
        if (chance.one_in(2))
            each.sizes.push_back("mtu " + std::to_string(2000 + chance.below(7000)));
        if (chance.one_in(4))
            each.sizes.emplace_back("pause no-drop");
        all.push_back(each);
    }
    all.push_back({"class-default", "0", {}, {"bandwidth percent 5"}, {}});
    if (chance.one_in(2))
        all.back().sizes.emplace_back(chance.one_in(2) ? "mtu 9216" : "mtu 1510");
    else
        all.front().sizes = {"mtu 3000"}; // so that no policy-map is without actions
    return all;
}

// A policy-map with the actions that `actions` finds in each class; classes without any are left
// out.
template<typename actions_t>
std::string policy(const std::string &name, const std::string &type,
                   const std::vector<class_t> &classes, actions_t actions) {
    std::string text = "policy-map " + type + name + '\n';
    for (const class_t &each : classes) {
        const lines_t found = actions(each);
        if (found.empty())
            continue;
        text += "  class " + type + each.name + '\n';
        for (const std::string &action : found)
            text += "    " + action + '\n';
    }
    return text;
}

lines_t scheduling_of(const class_t &each) { return each.scheduling; }
lines_t sizes_of(const class_t &each) { return each.sizes; }
lines_t group_of(const class_t &each) {
    return each.matches.empty() ? lines_t() : lines_t{"set qos-group " + each.group};
}
lines_t all_of(const class_t &each) {
    lines_t all = each.scheduling;
    all.insert(all.end(), each.sizes.begin(), each.sizes.end());
    return all;
}

std::string class_maps(const std::vector<class_t> &classes, const std::string &type, bool groups) {
    std::string text;
    for (const class_t &each : classes) {
        if (each.matches.empty())
            continue;
        text += "class-map " + type + each.name + '\n';
        for (const std::string &line : groups ? lines_t{"qos-group " + each.group} : each.matches)
            text += "  match " + line + '\n';
    }
    return text;
}

std::string ports(chance_t &chance, const std::string &attachment) {
    std::string text;
    const size_t count = 1 + chance.below(3);
    for (size_t i = 1; i <= count; i++) {
        text += "interface Ethernet1/" + std::to_string(i) + "\n  switchport mode trunk\n";
        if (chance.one_in(3))
            text += "  service-policy " + attachment + '\n';
    }
    return text + "line vty\n  exec-timeout 10\n";
}

std::string untyped(chance_t &chance) {
    const auto all = classes(chance);
    // What may not survive: marking at a port.
    const bool marks = chance.one_in(6);
    return class_maps(all, "", false) + policy("dc", "", all, all_of) +
           policy("port", "", all, scheduling_of) +
           (marks ? policy("marks", "", all, group_of) : "") +
           "vlan 1\nsystem qos\n  service-policy dc\n" +
           ports(chance, marks ? "input marks" : "output port");
}

std::string typed(chance_t &chance) {
    auto all = classes(chance);
    // What may not survive: a shared group, and scheduling in one direction.
    if (chance.one_in(6))
        all[1].group = all[0].group;
    const bool both = !chance.one_in(6);
    std::string text;
    for (const auto &[type, groups] :
         {std::pair("type qos ", false), {"type queuing ", true}, {"type network-qos ", true}})
        text += class_maps(all, type, groups);
    return text + policy("dc", "type qos ", all, group_of) +
           policy("dc", "type queuing ", all, scheduling_of) +
           policy("dc", "type network-qos ", all, sizes_of) +
           "system qos\n  service-policy type qos input dc\n"
           "  service-policy type queuing input dc\n" +
           (both ? "  service-policy type queuing output dc\n" : "") +
           "  service-policy type network-qos dc\nvlan 1\n" +
           ports(chance, "type queuing output dc");
}

} // namespace

std::string configuration(chance_t &chance, bool is_typed) {
    return "hostname sw1\nfeature lldp\n" + (is_typed ? typed(chance) : untyped(chance));
}

std::vector<conversion_t> conversions(unsigned seed, size_t count) {
    const std::vector<std::string> pairs[] = {{"4.1(2)", "4.1(3)"},
                                              {"4.1(2)", "5.0(3)"},
                                              {"4.1(3)", "4.2(1)"},
                                              {"4.2(1)", "4.1(3)"},
                                              {"5.0(2)", "4.1(2)"}};
    chance_t chance(seed);
    std::vector<conversion_t> made;
    while (made.size() < count) {
        const auto &route = pairs[made.size() % std::size(pairs)];
        const std::string text = configuration(chance, route[0] != "4.1(2)");
        const auto converted = support::convert(support::service_named("qos"), text,
                                                route[0].c_str(), route[1].c_str(), 0);
        if (converted.status == 0)
            made.push_back({text, converted.file, route});
    }
    return made;
}

std::vector<conversion_t> golden_conversions() {
    std::vector<conversion_t> kept;
    for (const support::golden_t &golden : support::golden_cases()) {
        if (!golden.fails() && !golden.is_trap())
            kept.push_back({golden.before(), golden.after(), {golden.from, golden.to}});
    }
    return kept;
}

size_t errors_of(const conversion_t &conversion) {
    const auto findings =
        infraconvert::judge(conversion.before, conversion.after, conversion.route);
    return infraconvert::count_findings(findings).errors;
}

lines_t lines_of(const std::string &text) {
    lines_t lines;
    for (const std::string_view line : infraconvert::split_lines(text))
        lines.emplace_back(line);
    return lines;
}

std::string joined(const lines_t &lines) {
    std::string text;
    for (const std::string &line : lines)
        text += line;
    return text;
}

} // namespace meaning_test
