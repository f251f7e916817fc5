// The forms in which an audit is given out.
#pragma once

#include "reports/fleet_summary.h"

#include <span>
#include <string>

namespace infraconvert {

struct format_t {
    const char *name; // on the command line
    std::string (*write)(const fleet_summary_t &summary);
};
// All formats, the one without --format first.
std::span<const format_t> formats();

std::string audit_text(const fleet_summary_t &summary);
std::string audit_json(const fleet_summary_t &summary);
std::string audit_sarif(const fleet_summary_t &summary);

} // namespace infraconvert
