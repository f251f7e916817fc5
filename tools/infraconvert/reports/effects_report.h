// The effect table for people and for programs.
#pragma once

#include "meaning/changes.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace infraconvert {

using effects_t = std::vector<meaning::changed_row_t>;

// Grouped by place, places where the same happens together; changes are marked in front.
std::string effects_text(const effects_t &rows);

// Each with "place", "direction", "traffic", "effect" and "change".
nlohmann::ordered_json rows_json(const effects_t &rows);

} // namespace infraconvert
