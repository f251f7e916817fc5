// The effect table for people and for programs.
#pragma once

#include "conversion/route.h"
#include "meaning/changes.h"

#include <string>
#include <vector>

namespace infraconvert {

using effects_t = std::vector<meaning::changed_row_t>;

// Grouped by place, places where the same happens together; changes are marked in front.
std::string effects_text(const effects_t &rows);

// `route` goes nowhere where nothing was converted.
std::string effects_json(const std::string &path, const route_t &route, bool failed,
                         const effects_t &rows);

} // namespace infraconvert
