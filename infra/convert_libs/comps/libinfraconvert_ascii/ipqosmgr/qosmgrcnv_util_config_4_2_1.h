// Between 4.1(3) and 4.2(1) the typed form stays, but MTU values are counted differently.
#pragma once

#include "platform/platform.h"

// The whole conversion from 4.1(3) to 4.2(1) or later. Returns 0, or the failing step's status.
syserr_t qosmgr_convert_ascii_4_2_1_upgrade();

// Puts "match-any" into the class-maps of type qos where the conversion goes to 5.0(2) or later.
// Returns 0 or -1.
syserr_t qoscnv_identify_classmaps_for_type();

// For each policy-map with unified-fabric actions, writes a further network-qos policy-map of its
// name with converted MTU values behind the last one. Returns 0 or -1.
syserr_t qoscnv_rewrite_maps_4_2_1(boolean is_upgrade);
