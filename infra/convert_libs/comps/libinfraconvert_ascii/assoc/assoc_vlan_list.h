// The list of VLAN ids behind "vlan ", such as 1-10,20.
#pragma once

#include "assoc/assoc_engine.h"

#include <vector>

struct assoc_int_mono_range_t {
    uint32_t lower_int;
    uint32_t upper_int; // equal to lower_int for a single VLAN
    bool lacks_upper;   // "5-": stands for no VLAN at all
};

// The ranges in the order of the list; at most 512, the rest is ignored.
using assoc_int_multi_range_t = std::vector<assoc_int_mono_range_t>;

// Parses the list of the line at `cp`, which begins with "vlan ". Returns false when there is no
// line.
bool assoc_get_vlan_mrange(engine::position_t cp, assoc_int_multi_range_t &vrange);
