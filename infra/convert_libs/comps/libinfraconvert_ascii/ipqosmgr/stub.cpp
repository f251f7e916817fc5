#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "ipqosmgr/qosmgrcnv_util_config_4_2_1.h"
// clang-format off
#define STUB(name) syserr_t name() { qoscnv_log("not built yet\n"); return engine::failure; }
STUB(qoscnv_remove_description)
STUB(qoscnv_remove_match_any)
STUB(qoscnv_identify_empty_classmaps)
STUB(qoscnv_identify_empty_policymaps)
STUB(qoscnv_delete_type_qos_attachments)
STUB(qoscnv_remove_type_qos)
STUB(qoscnv_remove_type_queuing)
STUB(qoscnv_remove_type_nq)
STUB(qoscnv_remove_qos_groups)
STUB(qoscnv_remove_empty_classmaps)
STUB(qoscnv_replace_policymaps)
STUB(qoscnv_delete_duplicate_attachments)
STUB(qosmgr_convert_ascii_5_0_3_downgrade)
STUB(qosmgr_convert_ascii_4_2_1_upgrade)
syserr_t qoscnv_rewrite_maps_4_2_1(boolean) { return engine::failure; }
STUB(qoscnv_build_policymaps_db_downgrade)
