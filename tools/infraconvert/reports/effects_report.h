// The effect table for people and for programs.
#pragma once

#include "conversion/releases.h"
#include "meaning/changes.h"

#include <string>
#include <vector>

namespace infraconvert {

using effects_t = std::vector<meaning::changed_row_t>;

// Grouped by place, places where the same happens together; changes are marked in front.
std::string effects_text(const effects_t &rows);

// `releases` has no release to go to where nothing was converted.
std::string effects_json(const std::string &path, const release_pair_t &releases, bool failed,
                         const effects_t &rows);

} // namespace infraconvert
