// The features with converters of their own: VLANs with FCoE, fabric extenders, and commands that
// releases spell differently.

#include "audit/checks.h"

#include <algorithm>
#include <map>

namespace infraconvert {

namespace {

// ---- VLANs with FCoE

using vlans_t = std::map<long, size_t>; // and the line of the stanza

constexpr long highest_vlan = 4095;

// The numbers of a list such as 1,10-12. Parts that are no numbers or ranges count for nothing.
std::vector<long> vlan_list(std::string_view list) {
    std::vector<long> numbers;
    std::string text(list);
    for (char *at = text.data(); *at;) {
        char *end;
        const long low = strtol(at, &end, 10);
        const bool number = end != at;
        at = end;
        long high = low;
        if (number && *at == '-')
            high = strtol(at + 1, &end, 10), at = end;
        for (long vlan = low; number && vlan <= std::min(high, highest_vlan); vlan++)
            numbers.push_back(vlan);
        if (*at)
            at++;
    }
    return numbers;
}

vlans_t fcoe_vlans(const document_t &document) {
    vlans_t vlans;
    for (const stanza_t &stanza : document.stanzas) {
        const std::string_view header = document.header(stanza);
        if (!is_vlan_list(header))
            continue;
        for (size_t i = stanza.first + 1; i < stanza.end; i++) {
            if (trimmed(document.lines[i]) != "fcoe")
                continue;
            for (const long vlan : vlan_list(header.substr(5)))
                vlans.emplace(vlan, stanza.first);
        }
    }
    return vlans;
}

// ---- fabric extenders

struct fabric_lines_t {
    size_t header = 0, associate = 0, mode = 0; // lines; 0 for none
    std::vector<std::string> texts;             // sorted
};

std::vector<fabric_lines_t> fabric_lines(const document_t &document) {
    std::vector<fabric_lines_t> all;
    for (const stanza_t &stanza : document.stanzas) {
        if (!document.header(stanza).starts_with("interface "))
            continue;
        fabric_lines_t found = {stanza.first, 0, 0, {}};
        for (size_t i = stanza.first + 1; i < stanza.end; i++) {
            const std::string_view line = trimmed(document.lines[i]);
            size_t *place = line.starts_with("fex associate")                ? &found.associate
                            : line.starts_with("switchport mode fex-fabric") ? &found.mode
                                                                             : nullptr;
            if (place && *place == 0)
                *place = i;
            if (place)
                found.texts.emplace_back(line);
        }
        std::sort(found.texts.begin(), found.texts.end());
        all.push_back(found);
    }
    return all;
}

constexpr release_numbers_t release_fabric_order = {5, 0, 3, 0, 0};

// ---- spelling

struct spelling_t {
    std::string_view older, newer; // starts of the command
    release_numbers_t changed;     // the first release with the newer form
};

constexpr spelling_t spellings[] = {
    {"npiv enable", "feature npiv", {4, 1, 3, 2, 1}},
    {"port-security enable", "feature port-security", {4, 1, 3, 1, 1}},
    {"port-security ", "fc-port-security ", {4, 1, 3, 2, 1}},
    {"feature port-security", "feature fc-port-security", {4, 1, 3, 2, 1}},
    {"mac-address-table", "mac address-table", {4, 2, 1, 0, 0}},
};

} // namespace

void check_vlans(audit_t &audit) {
    if (!audit.ran("assoc"))
        return;
    const vlans_t before = fcoe_vlans(audit.before), after = fcoe_vlans(audit.after);
    for (const auto &[vlan, line] : before) {
        if (vlan > 0 && !after.contains(vlan))
            audit.add("IC067", "VLAN " + std::to_string(vlan) + " lost it", {line}, {});
    }
    for (const auto &[vlan, line] : after) {
        if (vlan == 0 && !before.contains(vlan))
            audit.add("IC066", "", {}, {line});
        else if (!before.contains(vlan))
            audit.add("IC067", "VLAN " + std::to_string(vlan) + " gained it", {}, {line});
    }
}

void check_fabric_extenders(audit_t &audit) {
    if (audit.ran("satmgr")) {
        const auto before = fabric_lines(audit.before), after = fabric_lines(audit.after);
        for (size_t i = 0; i < std::min(before.size(), after.size()); i++) {
            if (before[i].texts != after[i].texts)
                audit.add("IC001", "a fabric extender line changed",
                          {before[i].associate ? before[i].associate : before[i].header},
                          {after[i].header});
        }
    }
    if (audit.from >= release_fabric_order || audit.to < release_fabric_order)
        return;
    for (const fabric_lines_t &lines : fabric_lines(audit.after)) {
        if (lines.associate && lines.mode && lines.associate < lines.mode)
            audit.add("IC068", "", {}, {lines.associate, lines.mode});
    }
}

void check_spelling(audit_t &audit) {
    for (const spelling_t &spelling : spellings) {
        const bool newer = audit.to >= spelling.changed;
        if ((audit.from >= spelling.changed) == newer)
            continue;
        const std::string_view stale = newer ? spelling.older : spelling.newer;
        audit_t::numbers_t lines;
        for (size_t i = 0; i < audit.after.lines.size(); i++) {
            if (audit.after.lines[i].starts_with(stale))
                lines.push_back(i);
        }
        const std::string other(trimmed(newer ? spelling.newer : spelling.older));
        if (!lines.empty())
            audit.add(newer ? finding_code_t("IC045") : finding_code_t("IC044"),
                      "the other release says \"" + other + '"', {}, lines);
    }
}

} // namespace infraconvert
