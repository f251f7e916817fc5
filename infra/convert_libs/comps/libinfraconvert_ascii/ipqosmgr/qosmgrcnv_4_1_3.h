// The QoS converter: which pipeline a pair of releases calls for.
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t qoscnv_conversion;
