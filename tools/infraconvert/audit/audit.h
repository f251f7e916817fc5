// What a conversion loses or changes beyond its rules, found by comparing the stanzas of the
// original with those of the result.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"

#include <vector>

namespace infraconvert {

// Findings in the order of their severity, their codes, and the lines within. A thorough audit also
// looks at the release that the configuration names, and converts once more to see whether that
// would change the result.
std::vector<finding_t> audit(const converted_t &conversion, bool thorough);

} // namespace infraconvert
