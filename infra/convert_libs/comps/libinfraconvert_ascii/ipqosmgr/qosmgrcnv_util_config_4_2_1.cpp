// The pipeline from 4.1(3) to 4.2(1) or later.

#include "ipqosmgr/qosmgrcnv_util_config_4_2_1.h"

#include "ipqosmgr/qosmgrcnv_engine.h"
#include "ipqosmgr/qosmgrcnv_pipeline.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

namespace {

constexpr qoscnv_step_t upgrade_steps[] = {
    {qoscnv_remove_description},
    {qoscnv_identify_classmaps_for_type},
    {qoscnv_build_policymaps_db_downgrade, "failed to build policymaps database for upgrade"},
    {[] { return qoscnv_rewrite_maps_4_2_1(true); }, "Could not write out updated maps", true},
};

} // namespace

syserr_t qosmgr_convert_ascii_4_2_1_upgrade() {
    qoscnv_log("entering ...\n");
    const syserr_t status = qoscnv_run_steps(__func__, upgrade_steps);
    if (status == 0)
        qoscnv_log("ver eq_4_1_3 %d to ver eq_4_2_1 %d, gt_4_2_1 %d: cnv completed\n",
                   qoscnv_ver_from_eq_4_1_3(), qoscnv_ver_to_eq_4_2_1(), qoscnv_ver_to_gt_4_2_1());
    return status;
}
