// The QoS converter: the untyped QoS policy of releases before 4.1(3), the typed one of later
// releases, and the translation between them.
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t qoscnv_conversion;
