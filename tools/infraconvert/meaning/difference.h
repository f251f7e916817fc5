// What is different between two configurations, as effects: the result of a comparison.
#pragma once

#include "meaning/effects.h"
#include "meaning/finding_kinds.h"

#include <cstdint>
#include <string>
#include <vector>

namespace infraconvert::meaning {

struct row_change_t {
    row_t row;
    bool gained; // else lost
};

struct difference_t {
    finding_code_t code;
    std::string words;                   // "Ethernet1/1 output: priority for cos 5 is gone"
    std::vector<row_change_t> rows = {}; // those of the effect table that are concerned
    std::vector<uint32_t> before = {}, after = {}; // lines of the two texts, from 1, sorted

    severity_t severity() const { return code.kind().severity; }
    bool is_error() const { return severity() == severity_t::error; }
};

} // namespace infraconvert::meaning
