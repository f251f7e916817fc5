// The policies attached at each place of the original against those of the result.

#include "audit/checks.h"

#include <algorithm>
#include <map>

namespace infraconvert {

namespace {

using list_t = std::vector<const attachment_t *>;

std::map<std::string, list_t> by_place(const qos_t &qos) {
    std::map<std::string, list_t> places;
    for (const attachment_t &attachment : qos.attachments)
        places[attachment.place].push_back(&attachment);
    return places;
}

// What an attachment has to be; null and empty parts do not matter.
struct wanted_t {
    const std::string &name;
    const char *type = nullptr;
    std::string direction = {};
};

bool has(const list_t &list, const wanted_t &wanted) {
    return std::any_of(list.begin(), list.end(), [&](const attachment_t *a) {
        return a->name == wanted.name && (!wanted.type || a->type == wanted.type) &&
               (wanted.direction.empty() || a->direction == wanted.direction);
    });
}

audit_t::numbers_t lines_of(const list_t &list, const std::string &name) {
    audit_t::numbers_t lines;
    for (const attachment_t *attachment : list) {
        if (attachment->name == name)
            lines.push_back(attachment->line);
    }
    return lines;
}

bool has_actions(const qos_t &qos, const std::string &type, const std::string &policy) {
    const map_t *map = qos.find(false, &type, policy);
    return map && std::any_of(map->classes.begin(), map->classes.end(),
                              [](const class_t &c) { return !c.actions.empty(); });
}

// An untyped attachment, and what must have become of it by the types of its policy-map.
void compare_upgraded(audit_t &audit, const attachment_t &old, const list_t &now) {
    const std::string queuing = "queuing", network = "network-qos", qos = "qos";
    if (has(now, {old.name, ""}))
        return; // stayed as it was, which is told elsewhere
    const auto missing = [&](const std::string &type) {
        audit.add("IC040", old.place + ", type " + type, {old.line}, lines_of(now, old.name));
    };
    const bool schedules = has_actions(audit.qos_after, queuing, old.name);
    if (schedules && !has(now, {old.name, "queuing", old.on_system() ? "output" : old.direction}))
        missing(queuing);
    const bool shapes = has_actions(audit.qos_after, network, old.name);
    if (shapes && !has(now, {old.name, "network-qos"}))
        missing(network);
    const bool marks = has_actions(audit.qos_after, qos, old.name) || (!schedules && !shapes);
    if (marks && !has(now, {old.name, "qos"}))
        audit.add("IC041", old.place, {old.line}, lines_of(now, old.name));
    else if (old.direction == "output" && !has(now, {old.name, nullptr, "output"}))
        audit.add("IC042", old.place, {old.line}, lines_of(now, old.name));
}

void compare_downgraded(audit_t &audit, const attachment_t &old, const list_t &now) {
    const bool marks = old.type == "qos";
    if (marks && old.on_system())
        return; // the classes number themselves there; one that does not is told as an action
    if (!has(now, {old.name, nullptr, old.on_system() ? "" : old.direction}))
        audit.add(marks ? finding_code_t("IC041") : finding_code_t("IC040"), old.place, {old.line},
                  lines_of(now, old.name));
}

void compare_typed(audit_t &audit, const attachment_t &old, const list_t &now) {
    if (!has(now, {old.name, old.type.c_str(), old.direction}))
        audit.add("IC040", old.place, {old.line}, lines_of(now, old.name));
}

} // namespace

void check_attachments(audit_t &audit) {
    if (!audit.ran("qos"))
        return;
    const auto compare = audit.becomes_typed()     ? compare_upgraded
                         : audit.becomes_untyped() ? compare_downgraded
                                                   : compare_typed;
    auto before = by_place(audit.qos_before);
    auto after = by_place(audit.qos_after);
    for (const auto &[place, list] : before) {
        for (const attachment_t *attachment : list)
            compare(audit, *attachment, after[place]);
    }
    for (const auto &[place, list] : after) {
        for (const attachment_t *attachment : list) {
            if (!has(before[place], {attachment->name}))
                audit.add("IC002", "an attachment", {}, {attachment->line});
        }
    }
}

} // namespace infraconvert
