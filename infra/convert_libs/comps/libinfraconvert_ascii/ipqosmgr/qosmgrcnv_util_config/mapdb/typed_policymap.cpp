// One typed policy-map as text, the special classes first.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/typed_policymap.h"

#include "ipqosmgr/qosmgrcnv_util_config/language/mtu.h"

using engine::position_t;

namespace {

// "class-ip-multicast" and then "class-all-flood" come first, but only their records of exactly the
// type that is written.
void move_special_classes_to_head(const typed_policymap_writer_t &writer, policymap_elem_t &pmap) {
    class_elem_t *ip_multicast = nullptr, *all_flood = nullptr;
    for (class_elem_t **link = &pmap.classes.first; *link;) {
        const class_elem_t &cls = **link;
        writer.pass.log("Looking at class %s type %d\n", cls.name, cls.type);
        const bool is_ip_multicast = cls.name == class_ip_multicast;
        if (cls.type != writer.type || !qoscnv_is_special_class(cls.name)) {
            link = &(*link)->next;
            continue;
        }
        writer.pass.log("Found special class %s\n", cls.name);
        (is_ip_multicast ? ip_multicast : all_flood) = pmap.classes.unlink(link);
    }
    if (all_flood) {
        pmap.classes.insert_head(all_flood);
        writer.pass.log("Moved class-all-flood to start of policy\n");
    }
    if (ip_multicast) {
        pmap.classes.insert_head(ip_multicast);
        writer.pass.log("Moved class-ip-multicast to start of policy:type=%d\n",
                        ip_multicast->type);
    }
}

bool write_action(const typed_policymap_writer_t &writer, const char *action, position_t &at) {
    const char *behind_mtu = qoscnv_behind_mtu(action);
    if (!behind_mtu)
        return writer.pass.write(at, action);
    writer.trace_mtu(behind_mtu);
    const std::string converted = qoscnv_convert_mtu(behind_mtu, writer.upgrade);
    if (converted.empty())
        return writer.pass.write(at, action);
    writer.pass.log("converted %s\n", converted.c_str());
    return writer.pass.write(at, converted);
}

bool write_class(const typed_policymap_writer_t &writer, const class_elem_t &cls, position_t &at) {
    const std::string line =
        std::string("  class ") + qoscnv_type_words(writer.type) + ' ' + cls.name + '\n';
    if (!writer.pass.write(at, line))
        return false;
    for (const auto *action = cls.class_actions.first; action; action = action->next) {
        if ((action->type & writer.type) && !write_action(writer, action->action, at))
            return false;
    }
    return true;
}

} // namespace

bool qoscnv_begin_typed_policymap(const typed_policymap_writer_t &writer,
                                  const policymap_elem_t &pmap) {
    writer.pass.log("Creating new policy-maps of type %d for policy-map %s\n", writer.type,
                    pmap.name);
    if (writer.type == QOSCNV_TYPE_QUEUING || writer.type == QOSCNV_TYPE_UF)
        return true;
    writer.pass.log("Unexpected type %u\n", writer.type);
    return false;
}

syserr_t qoscnv_write_typed_policymap(const typed_policymap_writer_t &writer,
                                      policymap_elem_t &pmap, position_t at) {
    const std::string header =
        std::string("policy-map ") + qoscnv_type_words(writer.type) + ' ' + pmap.name + '\n';
    if (!writer.pass.write(at, header))
        return engine::failure;
    move_special_classes_to_head(writer, pmap);
    for (const auto *cls = pmap.classes.first; cls; cls = cls->next) {
        if ((cls->type & writer.type) && !write_class(writer, *cls, at))
            return engine::failure;
    }
    return 0;
}
