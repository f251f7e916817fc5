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
using engine::position_t;

namespace {

constexpr std::string_view keyword = "policy-map";
constexpr std::string_view classmap_header = "\nclass-map";
constexpr std::string_view policymap_header = "\npolicy-map";

// Start of the first line at or behind `from` that begins with `header`, else nowhere.
position_t find_line(std::string_view header, position_t from) {
    const position_t found = qoscnv_find(header, from);
    return found == nowhere ? nowhere : found + newline_length;
}

// End of the last policy-map of the text, where nothing else marks it: the next stanza behind the
// line that follows the last mention of a policy-map at or behind `from`.
position_t behind_last_policymap(position_t from) {
    position_t last = from;
    for (position_t hit = from; (hit = qoscnv_find(keyword, hit)) != nowhere; hit++)
        last = hit;
    return qoscnv_stanza_after(qoscnv_line_after(last));
}

// End of the group of policy-maps that begins at `group`, when no class-maps follow it. A "system
// qos" ahead of the group does not end it.
position_t end_of_group(position_t group, position_t system_qos) {
    return system_qos != nowhere && system_qos > group ? system_qos : behind_last_policymap(group);
}

// Deletes both groups. `at` is then where the last one stood, nowhere when there was none.
void qoscnv_delete_policymaps(position_t &at) {
    at = nowhere;
    const position_t section = qoscnv_file_start_qossection();
    const position_t first_group = find_line(policymap_header, section);
    if (first_group == nowhere)
        return;
    const position_t classmaps_between = find_line(classmap_header, first_group);
    const position_t second_group = find_line(policymap_header, classmaps_between);
    const position_t system_qos = find_line("\nsystem qos", section);

    at = first_group;
    const position_t first_end =
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

bool write_header(const char *name, position_t &at) {
    return write_pass.write(at, std::string(keyword) + ' ' + name + '\n');
}

bool write_class(const class_elem_t &cls, position_t &at) {
    if (!write_pass.write(at, std::string("  class ") + cls.name + '\n'))
        return false;
    for (const auto *action = cls.class_actions.first; action; action = action->next) {
        if (!(action->type & QOSCNV_TYPE_QOS) && !write_pass.write(at, action->action))
            return false;
    }
    return true;
}

bool write_policymap(const policymap_elem_t &pmap, position_t &at) {
    write_pass.log("writing policy-map for %s\n", pmap.name);
    if (!write_header(pmap.name, at))
        return false;
    for (const auto *cls = pmap.classes.first; cls; cls = cls->next) {
        if (cls->type != QOSCNV_TYPE_QOS && !write_class(*cls, at))
            return false;
    }
    return true;
}

bool write_empty_policymaps(position_t &at) {
    for (const auto *empty = empty_policymaps.first; empty; empty = empty->next) {
        write_pass.log("writing empty policy-map %s\n", empty->name);
        if (!write_header(empty->name, at))
            return false;
    }
    return true;
}

// Writes the policy-maps of the database at `at`, which moves behind them. Without a place for them
// nothing is written.
syserr_t qoscnv_write_policymaps(position_t &at) {
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
    position_t at = nowhere;
    qoscnv_delete_policymaps(at);
    return qoscnv_write_policymaps(at);
}
