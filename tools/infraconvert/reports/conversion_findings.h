// The findings as a section of what preview and convert tell.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"
#include "window/exceptions.h"

#include <string>
#include <vector>

namespace infraconvert {

// What an audit finds in the conversion of `file` and how it is mended, without the failures, which
// are told by themselves; marked where it was agreed on, and with secrets masked if so wished.
// `request` is the one that made the conversion.
std::vector<finding_t> findings_of(const converted_t &conversion,
                                   const conversion_request_t &request, const std::string &file,
                                   exceptions_t &agreed, bool mask);

// Tells errors and warnings with their lines, and how many notes there are.
void tell_findings(const std::string &name, const std::vector<finding_t> &findings);

// The codes of the open errors, joined by commas.
std::string refused_codes(const std::vector<finding_t> &findings);

} // namespace infraconvert
