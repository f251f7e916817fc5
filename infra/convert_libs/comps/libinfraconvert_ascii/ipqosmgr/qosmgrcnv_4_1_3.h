// The QoS converter: which pipeline a pair of releases calls for.
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t qoscnv_conversion;

// Runs the pipeline of the rule that applies. Returns its status, 0 without one.
syserr_t qosmgr_convert_ascii_btw_diff_versions();
