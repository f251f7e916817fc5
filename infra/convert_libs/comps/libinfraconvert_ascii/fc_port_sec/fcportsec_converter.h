// The FC port-security converter. Releases before 4.1(3)K1(1) switch the feature on with
// "port-security enable", 4.1(3)K1(1) with "feature port-security"; from 4.1(3)K2(1) on every
// command of the feature is spelled "fc-port-security".
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t fcportsec_conversion;
