// The fabric-extender interface converter: from 5.0(3) on, "switchport mode fex-fabric" must stand
// in front of "fex associate".
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t satcnv_conversion;
