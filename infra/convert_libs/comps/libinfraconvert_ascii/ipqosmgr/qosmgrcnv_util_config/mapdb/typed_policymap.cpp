// One typed policy-map as text, the special classes first.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/typed_policymap.h"

namespace {

// "class-ip-multicast" and then "class-all-flood" come first, but only their records of exactly the
// type that is written.
void move_special_classes_to_head(const typed_policymap_pass_t &pass, policymap_elem_t &pmap) {
    class_elem_t *ip_multicast = nullptr, *all_flood = nullptr;
    for (class_elem_t **link = &pmap.classes.first; *link;) {
        const class_elem_t &cls = **link;
        engine::log(qoscnv_engine, pass.name, "Looking at class %s type %d\n", cls.name, cls.type);
        const bool is_ip_multicast = cls.name == class_ip_multicast;
        if (cls.type != pass.type || (!is_ip_multicast && cls.name != class_all_flood)) {
            link = &(*link)->next;
            continue;
        }
        engine::log(qoscnv_engine, pass.name, "Found special class %s\n", cls.name);
        (is_ip_multicast ? ip_multicast : all_flood) = pmap.classes.unlink(link);
    }
    if (all_flood) {
        pmap.classes.insert_head(all_flood);
        engine::log(qoscnv_engine, pass.name, "Moved class-all-flood to start of policy\n");
    }
    if (ip_multicast) {
        pmap.classes.insert_head(ip_multicast);
        engine::log(qoscnv_engine, pass.name,
                    "Moved class-ip-multicast to start of policy:type=%d\n", ip_multicast->type);
    }
}

bool write_action(const typed_policymap_pass_t &pass, const char *action, position &at) {
    const char *behind_mtu = qoscnv_behind_mtu(action);
    if (!behind_mtu)
        return qoscnv_write(pass.name, at, action);
    pass.trace_mtu(behind_mtu);
    const std::string converted = qoscnv_convert_mtu(behind_mtu, pass.upgrade);
    if (converted.empty())
        return qoscnv_write(pass.name, at, action);
    engine::log(qoscnv_engine, pass.name, "converted %s\n", converted.c_str());
    return qoscnv_write(pass.name, at, converted);
}

bool write_class(const typed_policymap_pass_t &pass, const class_elem_t &cls, position &at) {
    const std::string line =
        std::string("  class ") + qoscnv_type_words(pass.type) + ' ' + cls.name + '\n';
    if (!qoscnv_write(pass.name, at, line))
        return false;
    for (const auto *action = cls.class_actions.first; action; action = action->next) {
        if ((action->type & pass.type) && !write_action(pass, action->action, at))
            return false;
    }
    return true;
}

} // namespace

bool qoscnv_begin_typed_policymap(const typed_policymap_pass_t &pass,
                                  const policymap_elem_t &pmap) {
    engine::log(qoscnv_engine, pass.name, "Creating new policy-maps of type %d for policy-map %s\n",
                pass.type, pmap.name);
    if (pass.type == QOSCNV_TYPE_QUEUING || pass.type == QOSCNV_TYPE_UF)
        return true;
    engine::log(qoscnv_engine, pass.name, "Unexpected type %u\n", pass.type);
    return false;
}

syserr_t qoscnv_write_typed_policymap(const typed_policymap_pass_t &pass, policymap_elem_t &pmap,
                                      position at) {
    const std::string header =
        std::string("policy-map ") + qoscnv_type_words(pass.type) + ' ' + pmap.name + '\n';
    if (!qoscnv_write(pass.name, at, header))
        return engine::failure;
    move_special_classes_to_head(pass, pmap);
    for (const auto *cls = pmap.classes.first; cls; cls = cls->next) {
        if ((cls->type & pass.type) && !write_class(pass, *cls, at))
            return engine::failure;
    }
    return 0;
}
