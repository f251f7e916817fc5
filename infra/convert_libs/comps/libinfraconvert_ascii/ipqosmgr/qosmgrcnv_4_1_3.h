// Which pipeline a pair of releases calls for.
#pragma once

#include "engine/conversion.h"

// From 5.0(3) U2 to 5.0(3) U1.
bool qoscnv_ver_from_5_0_3_U2_to_U1();

constexpr size_t qoscnv_rule_count = 5;
extern const engine::rule_t qoscnv_rules[qoscnv_rule_count];

// Runs the pipeline of the rule that applies. Returns its status, 0 without one.
syserr_t qosmgr_convert_ascii_btw_diff_versions();
