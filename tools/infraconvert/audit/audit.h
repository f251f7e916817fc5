// What a conversion loses or changes: the judgement of meaning/ as findings, with what the
// conversion itself has to tell. Whichever services ran, the whole text is judged.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"

#include <vector>

namespace infraconvert {

// Findings in the order of their severity, their codes, and the lines within. A thorough audit also
// looks at the release that the configuration names. A conversion that failed is told with
// everything that the original has against it.
std::vector<finding_t> audit(const converted_t &conversion, bool thorough);

// Judges any result, however it came about. The route has the release that wrote the original and
// the one that reads the result, and between them those through which it went.
std::vector<finding_t> judge(const std::string &original, const std::string &result,
                             const std::vector<std::string> &route);

// The form of a configuration as the release that wrote it reads it, and maps that nothing uses.
std::vector<finding_t> judge_form_of(const std::string &text, const std::string &release);

} // namespace infraconvert
