// The page of an audit, for a browser.
#pragma once

#include "reports/fleet_summary.h"

#include <string>

namespace infraconvert {

// The part of the page that is about one configuration, which can be given before the others are
// looked at, so that not all texts need be kept.
std::string report_details(const audited_t &audited, const converted_t &conversion, bool mask);

// The page as a whole.
std::string report_page(const fleet_summary_t &summary);

} // namespace infraconvert
