// Between 4.1(3) and 4.2(1) a network-qos policy-map is followed by a copy of itself in which the
// MTU values are those of the other release; on the way up:
//
//     policy-map type network-qos p1        policy-map type network-qos p1
//       class type network-qos c1             class type network-qos c1
//         mtu 2240                              mtu 2240
//                                           policy-map type network-qos p1
//                                             class type network-qos c1
//                                               mtu 2202

#include "ipqosmgr/qosmgrcnv_util_config_4_2_1.h"

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/typed_policymap.h"

using engine::nowhere;
using engine::position_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_create_qosgrp_policymap_4_2_1"};

void trace_upgrade(const char *behind_mtu) {
    pass.log("convert %s, ver is to 4.2(1) %d, gt 4.2.(1) %d\n", behind_mtu,
             qoscnv_ver_to_eq_4_2_1(), qoscnv_ver_to_gt_4_2_1());
}

void trace_downgrade(const char *behind_mtu) {
    pass.log("convert %s, ver is eq 4.2(1) %d, gt 4.2(1) %d\n", behind_mtu,
             qoscnv_ver_from_eq_4_2_1(), qoscnv_ver_from_gt_4_2_1());
}

// Finds the place behind the last network-qos policy-map, nowhere without one. From the second
// policy-map on, that is where `at` stands already: behind the one written last.
void find_end_of_policymaps(position_t &at) {
    pass.log("Finding end of type unified-fabric stanzas ...\n");
    engine::last_hits_t header(qoscnv_engine, "policy-map type network-qos", {""});
    if (at == nowhere)
        at = qoscnv_behind_last_stanza(header);
    else
        qoscnv_file_start_qossection(); // as each search for the end says where the section begins
}

// Writes the network-qos policy-map of `pmap` at `at`, see above, which moves behind it.
syserr_t qoscnv_create_qosgrp_policymap_4_2_1(policymap_elem_t &pmap, bool upgrade,
                                              position_t &at) {
    const typed_policymap_writer_t writer = {.pass = pass,
                                             .type = QOSCNV_TYPE_UF,
                                             .upgrade = upgrade,
                                             .trace_mtu =
                                                 upgrade ? trace_upgrade : trace_downgrade};
    if (!qoscnv_begin_typed_policymap(writer, pmap))
        return engine::failure;
    find_end_of_policymaps(at);
    if (at == nowhere) {
        pass.log("Could not find policy-maps; aborting\n");
        return engine::failure;
    }
    const uint32_t size_before = qoscnv_engine.text->size();
    const syserr_t status = qoscnv_write_typed_policymap(writer, pmap, at);
    at += qoscnv_engine.text->size() - size_before;
    return status;
}

} // namespace

syserr_t qoscnv_rewrite_maps_4_2_1(boolean is_upgrade) {
    position_t at = nowhere;
    for (auto *pmap = policymaps.first; pmap; pmap = pmap->next) {
        if (!(pmap->type & QOSCNV_TYPE_UF)) {
            qoscnv_log("policy-map %s does not have actions of type unified-fabric\n", pmap->name);
            continue;
        }
        if (qoscnv_create_qosgrp_policymap_4_2_1(*pmap, is_upgrade, at) != 0) {
            qoscnv_log("could not create type network-qos policy-map for policy-map %s\n",
                       pmap->name);
            return engine::failure;
        }
        qoscnv_log("policy-map %s\n", pmap->name);
    }
    return 0;
}
