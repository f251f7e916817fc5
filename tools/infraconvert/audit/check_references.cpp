// Names that lead nowhere, and maps that came out in the wrong form.

#include "audit/checks.h"

#include <algorithm>
#include <set>

namespace infraconvert {

namespace {

// The switch knows these classes without a class-map.
bool is_predefined(const std::string &name) {
    return name == "class-default" || name == "class-fcoe" || name == "class-ip-multicast" ||
           name == "class-all-flood";
}

bool changes_form(const audit_t &audit) { return audit.becomes_typed() || audit.becomes_untyped(); }

void check_classes(audit_t &audit) {
    std::set<std::string> told;
    for (const map_t &map : audit.qos_after.maps) {
        for (const class_t &entry : map.classes) {
            const std::string &type = entry.type.empty() ? map.type : entry.type;
            if (is_predefined(entry.name) || audit.qos_after.find(true, &type, entry.name) ||
                !told.insert(map.title() + ' ' + entry.name).second)
                continue;
            const std::string *old_type = changes_form(audit) ? nullptr : &type;
            const bool was_there = audit.qos_before.find(true, old_type, entry.name);
            audit.add(was_there ? finding_code_t("IC010") : finding_code_t("IC011"), map.title(),
                      {}, {entry.line});
        }
    }
}

void check_attached(audit_t &audit) {
    for (const attachment_t &attachment : audit.qos_after.attachments) {
        const std::string *type = attachment.type.empty() ? nullptr : &attachment.type;
        if (audit.qos_after.find(false, type, attachment.name))
            continue;
        const std::string *old_type = changes_form(audit) ? nullptr : type;
        const bool was_there = audit.qos_before.find(false, old_type, attachment.name);
        audit.add(was_there ? finding_code_t("IC012") : finding_code_t("IC013"), attachment.place,
                  {}, {attachment.line});
    }
}

void check_empty_matches(audit_t &audit) {
    for (const map_t &map : audit.qos_after.maps) {
        if (!map.is_class_map || !map.matches.empty() ||
            (map.type != "queuing" && map.type != "network-qos") || is_predefined(map.name))
            continue;
        const map_t *old = audit.qos_before.find(true, &map.type, map.name);
        if (!old || !old->matches.empty())
            audit.add("IC014", "", {}, {map.stanza.first});
    }
}

void check_form(audit_t &audit) {
    if (!changes_form(audit))
        return;
    const bool typed = audit.becomes_typed();
    for (const map_t &map : audit.qos_after.maps) {
        if (map.type.empty() == typed)
            audit.add("IC043", "", {}, {map.stanza.first});
    }
    for (const attachment_t &attachment : audit.qos_after.attachments) {
        if (attachment.type.empty() == typed)
            audit.add("IC043", attachment.place, {}, {attachment.line});
    }
}

} // namespace

void check_references(audit_t &audit) {
    if (!audit.ran("qos"))
        return;
    check_classes(audit);
    check_attached(audit);
    check_empty_matches(audit);
    check_form(audit);
}

} // namespace infraconvert
