// For each policy-map, the typed class-maps that its classes need, the policy-map itself as type
// qos, and its policy-maps of type queuing and network-qos.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/typed_policymap.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/policymap_headers.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/typed_classmaps.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

using engine::nowhere;
using engine::position_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_rewrite_maps"};
constexpr qoscnv_pass_t policymap_pass{"qoscnv_create_qosgrp_policymap"};

// What is known of the text from one policy-map to the next.
struct headers_t {
    last_headers_t classmaps{"class-map", "\nclass-map"};
    last_headers_t policymaps{"policy-map", "policy-map"};
    policymap_headers_t existing;
};

void trace_mtu(const char *behind_mtu) {
    policymap_pass.log("convert %s, ver to 4.2(1) %d, gt 4.2(1) %d, ge 5.0(2) %d\n", behind_mtu,
                       qoscnv_ver_to_eq_4_2_1(), qoscnv_ver_to_gt_4_2_1(),
                       qoscnv_ver_to_ge_5_0_2());
}

syserr_t qoscnv_create_qosgrp_policymap(policymap_elem_t &pmap, uint8_t type,
                                        last_headers_t &headers) {
    const typed_policymap_writer_t writer = {
        .pass = policymap_pass, .type = type, .upgrade = true, .trace_mtu = trace_mtu};
    if (!qoscnv_begin_typed_policymap(writer, pmap))
        return engine::failure;
    const stanza_ends_t ends = qoscnv_find_stanza_ends(policymap_pass, headers);
    const position_t at = ends.insertion_point(type);
    if (at == nowhere) {
        policymap_pass.log("Could not find policy-maps; aborting\n");
        return engine::failure;
    }
    return qoscnv_write_typed_policymap(writer, pmap, at);
}

// Logs what failed for `pmap` when `status` is a failure, and returns the status.
syserr_t report(syserr_t status, const char *what, const policymap_elem_t &pmap) {
    if (status != 0)
        pass.log("could not %s policy-map %s\n", what, pmap.name);
    return status;
}

// A policy without queuing or unified-fabric actions keeps its actions.
syserr_t rewrite_qos_policymap(const policymap_elem_t &pmap, headers_t &headers) {
    pass.log("policy-map %s does not have actions of type queuing or type unified-fabric\n",
             pmap.name);
    return report(qoscnv_alter_existing_type_qos_policymap(pmap, headers.existing),
                  "alter existing type qos", pmap);
}

syserr_t rewrite_policymap(policymap_elem_t &pmap, headers_t &headers) {
    const bool has_queuing = pmap.type & QOSCNV_TYPE_QUEUING;
    const bool has_network_qos = pmap.type & QOSCNV_TYPE_UF;
    if (!has_queuing && !has_network_qos)
        return rewrite_qos_policymap(pmap, headers);
    syserr_t status = 0;
    if (has_queuing)
        status = report(qoscnv_create_qosgrp_classmap(pmap, QOSCNV_TYPE_QUEUING, headers.classmaps),
                        "create type queuing class-map for", pmap);
    if (status == 0 && has_network_qos)
        status = report(qoscnv_create_qosgrp_classmap(pmap, QOSCNV_TYPE_UF, headers.classmaps),
                        "create type network-qos class-map for", pmap);
    if (status == 0)
        status =
            report(qoscnv_alter_existing_policymap(pmap, headers.existing), "alter existing", pmap);
    if (status == 0 && has_queuing)
        status =
            report(qoscnv_create_qosgrp_policymap(pmap, QOSCNV_TYPE_QUEUING, headers.policymaps),
                   "create type queuing policy-map for", pmap);
    if (status == 0 && has_network_qos)
        status = report(qoscnv_create_qosgrp_policymap(pmap, QOSCNV_TYPE_UF, headers.policymaps),
                        "create type network-qos policy-map for", pmap);
    return status;
}

} // namespace

syserr_t qoscnv_rewrite_maps() {
    headers_t headers;
    for (auto *pmap = policymaps.first; pmap; pmap = pmap->next) {
        const syserr_t status = rewrite_policymap(*pmap, headers);
        if (status != 0)
            return status;
    }
    return 0;
}
