// All policy-maps go, and one untyped policy-map for each name is written in their place from the
// database, without what belongs to type qos:
//
//     policy-map type qos p1                  policy-map p1
//       class c1                                class c1
//         set qos-group 2                         bandwidth percent 20
//     policy-map type queuing p1                  pause no-drop
//       class type queuing c1
//         bandwidth percent 20
//     class-map type network-qos c1
//     policy-map type network-qos p1
//       class type network-qos c1
//         pause no-drop
//
// The policy-maps stand in up to two groups, with class-maps between them; "system qos" comes
// behind both.

#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

using engine::nowhere;
using engine::position;

namespace {

constexpr std::string_view keyword = "policy-map";
constexpr std::string_view classmap_header = "\nclass-map";
constexpr std::string_view policymap_header = "\npolicy-map";

// Start of the first line at or behind `from` that begins with `header`, else nowhere.
position find_line(std::string_view header, position from) {
    const position found = qoscnv_find(header, from);
    return found == nowhere ? nowhere : found + newline_length;
}

// End of the last policy-map of the text, where nothing else marks it: the next stanza behind the
// line that follows the last mention of a policy-map at or behind `from`.
position behind_last_policymap(position from) {
    position last = from;
    for (position hit = from; (hit = qoscnv_find(keyword, hit)) != nowhere; hit++)
        last = hit;
    return qoscnv_stanza_after(qoscnv_line_after(last));
}

// End of the group of policy-maps that begins at `group`, when no class-maps follow it. A "system
// qos" ahead of the group does not end it.
position end_of_group(position group, position system_qos) {
    return system_qos != nowhere && system_qos > group ? system_qos : behind_last_policymap(group);
}

// Deletes both groups. `at` is then where the last one stood, nowhere when there was none.
void qoscnv_delete_policymaps(position &at) {
    at = nowhere;
    const position section = qoscnv_file_start_qossection();
    const position first_group = find_line(policymap_header, section);
    if (first_group == nowhere)
        return;
    const position classmaps_between = find_line(classmap_header, first_group);
    const position second_group = find_line(policymap_header, classmaps_between);
    const position system_qos = find_line("\nsystem qos", section);

    at = first_group;
    const position first_end =
        classmaps_between != nowhere ? classmaps_between : end_of_group(first_group, system_qos);
    // The second group goes first, while the positions still hold.
    if (second_group != nowhere) {
        at = second_group - (first_end - first_group);
        qoscnv_delete_text(second_group, end_of_group(second_group, system_qos) - second_group);
    }
    qoscnv_delete_text(first_group, first_end - first_group);
    qoscnv_log("Deleted all existing policymaps\n");
}

constexpr qoscnv_pass_t write_pass{"qoscnv_write_policymaps"};

bool write_header(const char *name, position &at) {
    return write_pass.write(at, std::string(keyword) + ' ' + name + '\n');
}

bool write_class(const class_elem_t &cls, position &at) {
    if (!write_pass.write(at, std::string("  class ") + cls.name + '\n'))
        return false;
    for (const auto *action = cls.class_actions.first; action; action = action->next) {
        if (!(action->type & QOSCNV_TYPE_QOS) && !write_pass.write(at, action->action))
            return false;
    }
    return true;
}

bool write_policymap(const policymap_elem_t &pmap, position &at) {
    write_pass.log("writing policy-map for %s\n", pmap.name);
    if (!write_header(pmap.name, at))
        return false;
    for (const auto *cls = pmap.classes.first; cls; cls = cls->next) {
        if (cls->type != QOSCNV_TYPE_QOS && !write_class(*cls, at))
            return false;
    }
    return true;
}

bool write_empty_policymaps(position &at) {
    for (const auto *empty = empty_policymaps.first; empty; empty = empty->next) {
        write_pass.log("writing empty policy-map %s\n", empty->name);
        if (!write_header(empty->name, at))
            return false;
    }
    return true;
}

// Writes the policy-maps of the database at `at`, which moves behind them. Without a place for them
// nothing is written.
syserr_t qoscnv_write_policymaps(position &at) {
    write_pass.log("Writing out policymaps from database ...\n");
    if (at == nowhere)
        return 0;
    if (!write_empty_policymaps(at))
        return engine::failure;
    for (const auto *pmap = policymaps.first; pmap; pmap = pmap->next) {
        if (!write_policymap(*pmap, at))
            return engine::failure;
    }
    return 0;
}

} // namespace

syserr_t qoscnv_replace_policymaps() {
    position at = nowhere;
    qoscnv_delete_policymaps(at);
    return qoscnv_write_policymaps(at);
}
