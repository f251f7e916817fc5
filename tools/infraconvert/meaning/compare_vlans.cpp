// VLANs: which there are, which have FCoE, and their other lines.

#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

// "10-12,20"
std::string list_of(const vlans_t &vlans) {
    std::string text;
    for (size_t first = 0; first < vlans.size(); first++) {
        if (!vlans[first])
            continue;
        size_t last = first;
        while (last + 1 < vlans.size() && vlans[last + 1])
            last++;
        text += (text.empty() ? "" : ",") + std::to_string(first);
        if (last > first)
            text += '-' + std::to_string(last);
        first = last;
    }
    return text;
}

lines_t lines_with(const model_t &model, const vlans_t &vlans, bool with_fcoe) {
    lines_t lines;
    for (const vlan_stanza_t &stanza : model.vlans) {
        if ((stanza.vlans & vlans).none() || (with_fcoe && !stanza.has_fcoe))
            continue;
        lines.push_back(stanza.line);
        if (with_fcoe)
            lines.push_back(stanza.fcoe.front());
    }
    return lines;
}

void tell_vlans(comparison_t &comparison, finding_code_t code, bool with_fcoe) {
    const model_t &before = comparison.before.model, &after = comparison.after.model;
    const auto vlans_of = with_fcoe ? fcoe_vlans : all_vlans;
    const vlans_t old = vlans_of(before), now = vlans_of(after);
    const vlans_t lost = old & ~now, gained = now & ~old;
    const std::string what = with_fcoe ? " with fcoe" : "";
    if (lost.any())
        comparison.add(code, "VLAN " + list_of(lost) + what + " is gone",
                       lines_with(before, lost, with_fcoe), lines_with(after, lost, false));
    if (gained.any())
        comparison.add(code, "VLAN " + list_of(gained) + what + " is new",
                       lines_with(before, gained, false), lines_with(after, gained, with_fcoe));
}

struct vlan_lines_t {
    std::vector<std::string_view> texts;
    lines_t lines;
};

// The other lines of each VLAN, in their order.
std::map<size_t, vlan_lines_t> lines_by_vlan(const model_t &model) {
    std::map<size_t, vlan_lines_t> all;
    for (const vlan_stanza_t &stanza : model.vlans) {
        if (stanza.other.empty())
            continue;
        for (size_t vlan = 0; vlan < vlan_numbers; vlan++) {
            if (!stanza.vlans[vlan])
                continue;
            for (const line_t &line : stanza.other) {
                all[vlan].texts.push_back(line.text);
                all[vlan].lines.push_back(line.number);
            }
        }
    }
    return all;
}

// True when the other lines stand in the same stanzas, so that nothing need be looked at closely.
bool same_stanzas(const model_t &before, const model_t &after) {
    const auto with_lines = [](const model_t &model) {
        std::vector<const vlan_stanza_t *> stanzas;
        for (const vlan_stanza_t &stanza : model.vlans) {
            if (!stanza.other.empty())
                stanzas.push_back(&stanza);
        }
        return stanzas;
    };
    const auto old = with_lines(before), now = with_lines(after);
    return std::equal(
        old.begin(), old.end(), now.begin(), now.end(), [](const auto *a, const auto *b) {
            return a->vlans == b->vlans &&
                   std::equal(a->other.begin(), a->other.end(), b->other.begin(), b->other.end(),
                              [](const line_t &x, const line_t &y) { return x.text == y.text; });
        });
}

void compare_vlan_lines(comparison_t &comparison) {
    const model_t &before = comparison.before.model, &after = comparison.after.model;
    if (same_stanzas(before, after))
        return;
    const auto old = lines_by_vlan(before), now = lines_by_vlan(after);
    vlans_t changed;
    lines_t old_lines, lines;
    for (size_t vlan = 0; vlan < vlan_numbers; vlan++) {
        const auto was = old.find(vlan), is = now.find(vlan);
        const bool had = was != old.end(), has = is != now.end();
        if (had == has && (!had || was->second.texts == is->second.texts))
            continue;
        changed.set(vlan);
        if (had)
            old_lines.insert(old_lines.end(), was->second.lines.begin(), was->second.lines.end());
        if (has)
            lines.insert(lines.end(), is->second.lines.begin(), is->second.lines.end());
    }
    if (changed.any())
        comparison.add("IC001", "lines of VLAN " + list_of(changed) + " changed", old_lines, lines);
}

} // namespace

void compare_vlans(comparison_t &comparison) {
    tell_vlans(comparison, "IC056", false);
    tell_vlans(comparison, "IC067", true);
    compare_vlan_lines(comparison);
}

} // namespace infraconvert::meaning
