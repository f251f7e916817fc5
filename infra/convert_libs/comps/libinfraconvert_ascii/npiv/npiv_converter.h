// The NPIV converter: "npiv enable" in releases before 4.1(3)K2(1), "feature npiv" from there on.
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t npiv_conversion;
