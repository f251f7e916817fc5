// What the VLAN-FCoE association converter asks before it converts.

#include "assoc/assoc_engine.h"
#include "assoc/assoc_vlan_list.h"
#include "engine/loaded.h"

TEST(vlans, what_is_missing_is_no_reason_to_convert) {
    EXPECT_FALSE(assoc_conversion_needed(nullptr, "5.0(2)"));
    EXPECT_FALSE(assoc_conversion_needed("4.1(3)", nullptr));
    load(assoc_engine, "vlan 1\n");
    assoc_int_multi_range_t ranges;
    EXPECT_FALSE(assoc_get_vlan_mrange(8, ranges));
}
