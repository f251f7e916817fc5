// The MAC address-table converter: "mac address-table" from 4.2(1) on, "mac-address-table" before.
#pragma once

#include "engine/conversion.h"

extern const engine::conversion_t fwmcnv_conversion;
