// Findings for people, in a terminal.
#pragma once

#include "audit/findings.h"

#include <string>

namespace infraconvert {

// The findings of one configuration, grouped by their code, each with its lines. `least` leaves out
// what is less severe; what was agreed on comes last.
std::string findings_text(const std::vector<finding_t> &findings, severity_t least);

// What a code means, for infraconvert explain.
std::string finding_details(const finding_kind_t &kind);
std::string finding_details(const retired_kind_t &kind);
// All codes, one a line.
std::string finding_list();

} // namespace infraconvert
