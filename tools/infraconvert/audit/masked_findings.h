// Findings as they are shown with the secrets in them masked.
#pragma once

#include "audit/findings.h"
#include "audit/ways.h"
#include "conversion/conversion.h"

#include <vector>

namespace infraconvert {

// Masks the findings of this conversion, which must be as they were found: lines by their numbers
// in the original and in the result, and what is told about them.
void mask_findings(std::vector<finding_t> &findings, const converted_t &conversion);

// Masks what is told about ways of this configuration, in the same manner. Of a way back, whose
// result is not kept, the lines that it leaves behind are masked whole.
void mask_ways(std::vector<way_t> &ways, const shared_text_t &original);

} // namespace infraconvert
