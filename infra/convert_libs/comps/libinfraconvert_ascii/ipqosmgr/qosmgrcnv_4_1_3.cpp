// The routing of the QoS converter, and its two pipelines across 4.1(3).

#include "ipqosmgr/qosmgrcnv_4_1_3.h"

#include "ipqosmgr/qosmgrcnv_engine.h"
#include "ipqosmgr/qosmgrcnv_pipeline.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config_4_2_1.h"

namespace {

constexpr qoscnv_step_t upgrade_steps[] = {
    {qoscnv_build_classmaps_db, "failed to build classmaps database"},
    {qoscnv_build_policymaps_db_upgrade, "failed to build policymaps database"},
    {qoscnv_assign_qosgrp_to_sysqos_policy,
     "failed to assign qos groups to attached system policy"},
    {qoscnv_add_type_qos_to_classmaps, "Could not add \"type qos\" to existing class-maps", true},
    {qoscnv_add_type_qos_to_policymaps, "Could not add \"type qos\" to existing policy-maps", true},
    {qoscnv_rewrite_maps, "Could not write out updated maps", true},
    {qoscnv_rewrite_attachments, "Could not write out updated attachments", true},
};

constexpr qoscnv_step_t downgrade_to_4_1_3_steps[] = {
    {qoscnv_remove_description},
    {qoscnv_remove_match_any},
    {qoscnv_build_policymaps_db_downgrade, "failed to build policymaps database for downgrade"},
    {[] { return qoscnv_rewrite_maps_4_2_1(false); }, "Could not write out updated maps", true},
};

constexpr qoscnv_step_t downgrade_below_4_1_3_steps[] = {
    {qoscnv_remove_description},
    {qoscnv_build_policymaps_db_downgrade, "failed to build policymaps database"},
    {qoscnv_identify_empty_classmaps},
    {qoscnv_identify_empty_policymaps},
    {qoscnv_delete_type_qos_attachments},
    {qoscnv_remove_type_qos},
    {qoscnv_remove_type_queuing},
    {qoscnv_remove_type_nq},
    {qoscnv_remove_qos_groups},
    {qoscnv_remove_empty_classmaps},
    {qoscnv_replace_policymaps},
    {qoscnv_delete_duplicate_attachments, "Could not delete duplicate attachments", true},
};

syserr_t qosmgr_convert_ascii_4_1_3_upgrade() {
    qoscnv_log("entering ...\n");
    return qoscnv_run_steps(__func__, upgrade_steps);
}

bool from_ge_4_2_1() { return qoscnv_ver_from_eq_4_2_1() || qoscnv_ver_from_gt_4_2_1(); }
bool to_ge_4_2_1() { return qoscnv_ver_to_eq_4_2_1() || qoscnv_ver_to_gt_4_2_1(); }

syserr_t qosmgr_convert_ascii_4_1_3_downgrade() {
    qoscnv_log("entering ...\n");
    if (!qoscnv_ver_to_eq_4_1_3())
        return qoscnv_run_steps(__func__, downgrade_below_4_1_3_steps);
    const syserr_t status = qoscnv_run_steps(__func__, downgrade_to_4_1_3_steps);
    if (status == 0)
        qoscnv_log("4_2_1 to 4_1_3 mtu conversion completed\n");
    return status;
}

bool from_5_0_3_U2_to_U1() {
    return qoscnv_ver_from_eq_5_0_3() && qoscnv_ver_to_eq_5_0_3() && qoscnv_product_from_eq_U() &&
           qoscnv_product_to_eq_U() && qoscnv_subver_from_eq_2() && qoscnv_subver_to_eq_1();
}

// The conditions exclude one another.
constexpr engine::rule_t rules[] = {
    {.id = "IC-QOS-01",
     .plain_words = "keeps typed QoS; removes descriptions below map lines and, from 5.0(2) on, "
                    "\"match-any\"; repeats network-qos policy-maps with MTU values raised by 38",
     .applies = [] { return from_ge_4_2_1() && qoscnv_ver_to_eq_4_1_3(); },
     .pipeline = qosmgr_convert_ascii_4_1_3_downgrade},
    {.id = "IC-QOS-02",
     .plain_words = "turns typed class-maps, policy-maps and attachments into untyped ones",
     .applies = [] { return from_ge_4_2_1() && qoscnv_ver_to_lt_4_1_3(); },
     .pipeline = qosmgr_convert_ascii_4_1_3_downgrade},
    {.id = "IC-QOS-03",
     .plain_words = "keeps typed QoS; removes descriptions below map lines, adds \"match-any\" to "
                    "5.0(2) or later; repeats network-qos policy-maps with MTU values lowered by "
                    "38",
     .applies = [] { return qoscnv_ver_from_eq_4_1_3() && to_ge_4_2_1(); },
     .pipeline = qosmgr_convert_ascii_4_2_1_upgrade},
    {.id = "IC-QOS-04",
     .plain_words = "turns untyped class-maps, policy-maps and attachments into typed ones",
     .applies =
         [] { return qoscnv_ver_from_lt_4_1_3() && (to_ge_4_2_1() || qoscnv_ver_to_eq_4_1_3()); },
     .pipeline = qosmgr_convert_ascii_4_1_3_upgrade},
    {.id = "IC-QOS-05",
     .plain_words = "removes the control-plane lines: map headers, \"class copp...\" and \"police "
                    "pps\"; match lines stay",
     .applies = from_5_0_3_U2_to_U1,
     .pipeline = qosmgr_convert_ascii_5_0_3_downgrade},
};

} // namespace

constinit const engine::conversion_t qoscnv_conversion = {
    .engine = qoscnv_engine,
    .start_function = "ipqosmgr_infra_convert_startup",
    .invoked = "qosmgr convert_startup invoked",
    // From sub-version 2 to 1 of 5.0(3) the releases count as the same, and yet differ.
    .same_release = [] { return qoscnv_ver_same() && !from_5_0_3_U2_to_U1(); },
    .same_release_message = "from and to versions are exactly the same; no conversion required",
    .routing_function = "qosmgr_convert_ascii_btw_diff_versions",
    .before_routing = qoscnv_db_init,
    .rules = rules,
};
