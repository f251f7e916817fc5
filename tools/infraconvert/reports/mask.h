// Findings and conversions as they are shown with the secrets in them masked.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"

#include <vector>

namespace infraconvert {

// The conversion as it is shown, with secrets masked if so wished. The script stays, so that a
// difference within a secret still shows as one.
converted_t shown_conversion(converted_t conversion, bool mask);

void mask_findings(std::vector<finding_t> &findings);

} // namespace infraconvert
