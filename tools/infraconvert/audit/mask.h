// Secrets out of sight: passwords, keys and community strings in what is shown.
#pragma once

#include "audit/findings.h"
#include "conversion.h"

#include <string>
#include <string_view>
#include <vector>

namespace infraconvert {

// The line with "<masked>" in place of each secret. The same secret always gives the same text.
std::string masked(std::string_view line);
// The same of each line of a text.
std::string masked_lines(std::string_view text);

// The same of all texts that are shown of a conversion.
conversion_t masked_conversion(conversion_t conversion);

void mask_findings(std::vector<finding_t> &findings);

} // namespace infraconvert
