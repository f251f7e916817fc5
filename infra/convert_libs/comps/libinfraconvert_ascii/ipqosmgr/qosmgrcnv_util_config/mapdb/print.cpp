// The database as the log shows it.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

namespace {

void print_type(const qoscnv_pass_t &dump, const char *indent, uint8_t type) {
    static constexpr struct {
        uint8_t type;
        const char *text;
    } names[] = {{QOSCNV_TYPE_QOS, "qos"},
                 {QOSCNV_TYPE_QUEUING, "queuing"},
                 {QOSCNV_TYPE_UF, "unified-fabric/network-qos"}};
    for (const auto &name : names) {
        if (type & name.type)
            dump.log("%sType: %s\n", indent, name.text);
    }
    if (type == QOSCNV_TYPE_NONE)
        dump.log("%sType: none\n", indent);
}

void print_class(const qoscnv_pass_t &dump, const class_elem_t &cls) {
    dump.log("    Name: %s\n", cls.name);
    print_type(dump, "    ", cls.type);
    dump.log("    Actions:\n");
    for (const auto *action = cls.class_actions.first; action; action = action->next) {
        dump.log("      %s", action->action);
        print_type(dump, "      ", action->type);
    }
}

void print_names(const qoscnv_pass_t &dump, const tail_queue_t<list_elem_t> &list) {
    for (const auto *elem = list.first; elem; elem = elem->next)
        dump.log("\t%s\n", elem->name);
}

} // namespace

void qoscnv_db_print_policymaps() {
    constexpr qoscnv_pass_t dump{"qoscnv_db_print_policymaps"};
    dump.log("Policy-maps:\n");
    if (!engine::log_is_on(qoscnv_engine))
        return;
    for (const auto *map = policymaps.first; map; map = map->next) {
        dump.log("  Name: %s\n", map->name);
        print_type(dump, "  ", map->type);
        for (const auto *cls = map->classes.first; cls; cls = cls->next)
            print_class(dump, *cls);
    }
}

void qoscnv_db_print_classmaps() {
    constexpr qoscnv_pass_t dump{"qoscnv_db_print_classmaps"};
    dump.log("Class-maps:\n");
    if (!engine::log_is_on(qoscnv_engine))
        return;
    for (const auto *map = classmaps.first; map; map = map->next) {
        dump.log("  Name: %s\n", map->name);
        if (map->qos_group == qos_group_unassigned)
            dump.log("  Qos-group: invalid/unassigned\n");
        else
            dump.log("  Qos-group: %u\n", map->qos_group);
        for (const auto *match = map->matches.first; match; match = match->next)
            dump.log("    %s", match->name);
    }
}

void qoscnv_db_print_empty_policymaps() {
    constexpr qoscnv_pass_t dump{"qoscnv_db_print_empty_policymaps"};
    dump.log("Empty policy-maps:\n");
    print_names(dump, empty_policymaps);
}

void qoscnv_db_print_empty_classmaps() {
    constexpr qoscnv_pass_t dump{"qoscnv_db_print_empty_classmaps"};
    dump.log("Empty class-maps:\n");
    print_names(dump, empty_classmaps);
}
