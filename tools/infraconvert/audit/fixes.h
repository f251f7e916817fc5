// Fixes of a conversion: mending/ with the converters behind it, and what it found as a part of the
// findings.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"
#include "mending/mend.h"

#include <set>
#include <string>
#include <vector>

namespace infraconvert {

// Looks for fixes of the errors with these codes; of all for none. `request` is the one that made
// the conversion. Throws what a conversion throws.
mending::mended_t mend_conversion(const converted_t &conversion,
                                  const conversion_request_t &request,
                                  const std::set<std::string> &codes = {});

// The conversion with its fixes: from the original through the edits and the services to the lines
// behind them. What a fix changed has `fix_step` as its step.
converted_t with_fixes(const conversion_request_t &request, const mending::mended_t &mended);

// Adds the fixes to the findings that they mend, and the reasons why others have none.
void add_fixes(std::vector<finding_t> &findings, const mending::mended_t &mended,
               const std::string &original);

// What a result loses that is there already, and the lines that restore it. Of a way there and back
// the lines after the rollback.
struct judged_result_t {
    std::vector<finding_t> findings; // of the whole route, with their fixes
    mending::mended_t mended;

    // Something is not as it was that lines are wanted for, and nobody agreed to that.
    bool loses() const;
    // Of a way back: "reversible", "reversible with these lines", or "not reversible".
    const char *verdict() const;
};
// The verdict where there is nothing to judge.
constexpr const char *back_fails = "not reversible: the way back fails";

judged_result_t judge_with_fixes(const std::string &original, const std::string &result,
                                 const route_t &route);

// Looks for fixes where a finding is an error, and adds them. Returns what it found.
mending::mended_t mend_findings(std::vector<finding_t> &findings, const converted_t &conversion,
                                const conversion_request_t &request);

// The lines to type on the switch after the conversion, each fix behind a comment with its codes,
// and in comments those among which there is a choice; empty when there are none.
std::string lines_to_type(const mending::mended_t &mended);

} // namespace infraconvert
