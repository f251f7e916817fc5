// Numbers the classes of the policy attached under "system qos", so that the class-maps of type
// queuing and network-qos can match them:
//
//     class-default 0, class-fcoe 1, user classes 2 to 5 in the order of the policy's class records

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_assign_qosgrp_to_sysqos_policy"};

// Finds the first attachment under "system qos". Returns its position, or nowhere when there is
// nothing attached.
position_t find_attachment(position_t system_qos) {
    const position_t stanza = system_qos + newline_length;
    const position_t end = qoscnv_stanza_after(stanza);
    pass.log("start of stanza: byte %d, end of stanza: byte %d\n", static_cast<int>(stanza),
             static_cast<int>(end));
    const position_t attachment = qoscnv_find("service-policy", stanza);
    if (attachment == nowhere) {
        pass.log("no more service-policies in the configuration\n");
        return nowhere;
    }
    if (attachment >= end) {
        pass.log("No more service-policies on system qos\n");
        return nowhere;
    }
    pass.log("found service-policy at byte %d\n", static_cast<int>(attachment));
    return attachment;
}

// The policy-map record that `attachment` names; null with a message.
policymap_elem_t *attached_policymap(position_t attachment) {
    const words_t words = scan_words(*qoscnv_engine.text, attachment, "service-policy %s\n");
    if (!pass.fits(words))
        return nullptr;
    if (words.count == 0) {
        pass.log("unexpected service-policy format; aborting\n");
        return nullptr;
    }
    const std::string &name = words.word[0];
    pass.log("found service-policy name %s\n", name.c_str());
    policymap_elem_t *pmap = qoscnv_find_policymap(name);
    if (!pmap)
        pass.log("could not find policy-map for service-policy %s; aborting\n", name.c_str());
    return pmap;
}

class numbering_t {
  public:
    // Numbers every class-map of the class's name. Returns false, with a message, when there are
    // too many user classes.
    bool number_class(const class_elem_t &cls) {
        assigned = qos_group_unassigned;
        for (classmap_elem_t *map : qoscnv_classmaps_named(cls.name)) {
            if (!number_classmap(*map))
                return false;
        }
        pass.log("Done with search for class-map %s\n", cls.name);
        return true;
    }

  private:
    bool number_classmap(classmap_elem_t &map) {
        if (map.name == class_default)
            return take_fixed(map, qos_group_class_default);
        if (map.name == class_fcoe)
            return take_fixed(map, qos_group_class_fcoe);
        if (map.qos_group != qos_group_unassigned) {
            pass.log("class-map %s type %x already has qos-group %u; ignoring\n", map.name,
                     map.type, map.qos_group);
            return true;
        }
        return take_next(map);
    }

    bool take_fixed(classmap_elem_t &map, uint8_t group) {
        assign(map, group);
        if (map.qos_group == qos_group_unassigned)
            give(map);
        return true;
    }

    // Once all numbers are taken a further class-map is refused, also one that would share the
    // number of its class.
    bool take_next(classmap_elem_t &map) {
        if (next > qos_group_last_user) {
            pass.log("Too many user system classes; aborting\n");
            return false;
        }
        if (assigned == qos_group_unassigned)
            assign(map, next++);
        give(map);
        return true;
    }

    void assign(const classmap_elem_t &map, uint8_t group) {
        assigned = group;
        pass.log("Assigned qos-group %u to class-map %s\n", assigned, map.name);
    }

    void give(classmap_elem_t &map) {
        map.qos_group = assigned;
        pass.log("Assigned qos-group %u to class-map %s type %x\n", assigned, map.name, map.type);
    }

    uint8_t next = qos_group_first_user;
    uint8_t assigned = qos_group_unassigned; // to the class at hand
};

} // namespace

syserr_t qoscnv_assign_qosgrp_to_sysqos_policy() {
    const position_t system_qos = qoscnv_find("\nsystem qos", 0);
    if (system_qos == nowhere) {
        qoscnv_db_print_policymaps();
        return 0;
    }
    pass.log("found system qos at byte %d\n", static_cast<int>(system_qos));
    const position_t attachment = find_attachment(system_qos);
    if (attachment == nowhere)
        return 0;
    policymap_elem_t *pmap = attached_policymap(attachment);
    if (!pmap)
        return engine::failure;
    pmap->sysqos = 1;
    numbering_t numbers;
    for (const auto *cls = pmap->classes.first; cls; cls = cls->next) {
        if (!numbers.number_class(*cls))
            return engine::failure;
    }
    qoscnv_db_print_policymaps();
    return 0;
}

syserr_t qoscnv_classmap_to_qosgrp(const char *cmap_name, uint8_t *qos_group) {
    if (!qos_group) {
        qoscnv_log("qos-group argument invalid; aborting\n");
        return engine::failure;
    }
    if (cmap_name == class_fcoe) {
        *qos_group = qos_group_class_fcoe;
        return 0;
    }
    if (cmap_name == class_default) {
        *qos_group = qos_group_class_default;
        return 0;
    }
    const classmap_elem_t *map = qoscnv_find_classmap(cmap_name);
    if (!map) {
        qoscnv_log("did not find matching qosgrp for class-map %s\n", cmap_name);
        return engine::failure;
    }
    *qos_group = map->qos_group;
    qoscnv_log("found matching qosgrp %u to class-map %s\n", *qos_group, cmap_name);
    return 0;
}
