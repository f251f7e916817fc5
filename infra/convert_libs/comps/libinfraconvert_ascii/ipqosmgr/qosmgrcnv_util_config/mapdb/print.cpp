// The database as the log shows it.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

namespace {

void print_type(const char *dump, const char *indent, uint8_t type) {
    static constexpr struct {
        uint8_t type;
        const char *text;
    } names[] = {{QOSCNV_TYPE_QOS, "qos"},
                 {QOSCNV_TYPE_QUEUING, "queuing"},
                 {QOSCNV_TYPE_UF, "unified-fabric/network-qos"}};
    for (const auto &name : names) {
        if (type & name.type)
            engine::log(qoscnv_engine, dump, "%sType: %s\n", indent, name.text);
    }
    if (type == QOSCNV_TYPE_NONE)
        engine::log(qoscnv_engine, dump, "%sType: none\n", indent);
}

void print_class(const char *dump, const class_elem_t &cls) {
    engine::log(qoscnv_engine, dump, "    Name: %s\n", cls.name);
    print_type(dump, "    ", cls.type);
    engine::log(qoscnv_engine, dump, "    Actions:\n");
    for (const auto *action = cls.class_actions.first; action; action = action->next) {
        engine::log(qoscnv_engine, dump, "      %s", action->action);
        print_type(dump, "      ", action->type);
    }
}

void print_names(const char *dump, const tail_queue_t<list_elem_t> &list) {
    for (const auto *elem = list.first; elem; elem = elem->next)
        engine::log(qoscnv_engine, dump, "\t%s\n", elem->name);
}

} // namespace

void qoscnv_db_print_policymaps() {
    qoscnv_log("Policy-maps:\n");
    if (!engine::log_is_on(qoscnv_engine))
        return;
    for (const auto *map = policymaps.first; map; map = map->next) {
        qoscnv_log("  Name: %s\n", map->name);
        print_type(__func__, "  ", map->type);
        for (const auto *cls = map->classes.first; cls; cls = cls->next)
            print_class(__func__, *cls);
    }
}

void qoscnv_db_print_classmaps() {
    qoscnv_log("Class-maps:\n");
    if (!engine::log_is_on(qoscnv_engine))
        return;
    for (const auto *map = classmaps.first; map; map = map->next) {
        qoscnv_log("  Name: %s\n", map->name);
        if (map->qos_group == qos_group_unassigned)
            qoscnv_log("  Qos-group: invalid/unassigned\n");
        else
            qoscnv_log("  Qos-group: %u\n", map->qos_group);
        for (const auto *match = map->matches.first; match; match = match->next)
            qoscnv_log("    %s", match->name);
    }
}

void qoscnv_db_print_empty_policymaps() {
    qoscnv_log("Empty policy-maps:\n");
    print_names(__func__, empty_policymaps);
}

void qoscnv_db_print_empty_classmaps() {
    qoscnv_log("Empty class-maps:\n");
    print_names(__func__, empty_classmaps);
}
