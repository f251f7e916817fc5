// What a conversion loses or changes: the judgement of meaning/ as findings, with what the
// conversion itself has to tell. Whichever services ran, the whole text is judged.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"
#include "meaning/difference.h"

#include <functional>
#include <vector>

namespace infraconvert {

// Findings in the order of their severity, their codes, and the lines within. A thorough audit also
// looks at the release that the configuration names. A conversion that failed is told with
// everything that the original has against it. What several hops lose is told with the hop at which
// it happens.
std::vector<finding_t> audit(const converted_t &conversion, bool thorough);

// Judges any result, however it came about. The route has the release that wrote the original and
// the one that reads the result, and between them those through which it went.
std::vector<finding_t> judge(const std::string &original, const std::string &result,
                             const route_t &route);

// The same of differences that are known.
using differences_t = std::vector<meaning::difference_t>;
std::vector<finding_t> findings_from(const std::string &original, const std::string &result,
                                     const differences_t &differences);

// Names the hop of each finding of a whole route: the last one before which it was not so. `behind`
// compares the original with what the first hops of the route made of it.
void tell_hops(std::vector<finding_t> &findings, const route_t &route,
               const std::function<differences_t(size_t hops)> &behind);

// The form of a configuration as the release that wrote it reads it, and maps that nothing uses.
std::vector<finding_t> judge_form_of(const std::string &text, const std::string &release);

} // namespace infraconvert
