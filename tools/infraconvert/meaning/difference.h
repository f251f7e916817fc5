// What is different between two configurations, as effects: the result of a comparison.
#pragma once

#include "meaning/effects.h"

#include <cstdint>
#include <string>
#include <vector>

namespace infraconvert::meaning {

enum class weight_t { error, warning, note };

struct row_change_t {
    row_t row;
    bool gained; // else lost
};

struct difference_t {
    std::string code; // of the finding: "IC030"
    weight_t weight;
    std::string words;                   // "Ethernet1/1 output: priority for cos 5 is gone"
    std::vector<row_change_t> rows = {}; // those of the effect table that are concerned
    std::vector<uint32_t> before = {}, after = {}; // lines of the two texts, from 1, sorted
};

} // namespace infraconvert::meaning
