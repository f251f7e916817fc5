// The VLAN-FCoE association converter: releases 5.x want "fcoe" in a stanza of its own for each
// VLAN.
#pragma once

#include "engine/conversion.h"

#include <span>

extern const std::span<const engine::rule_t> assoc_rules;
