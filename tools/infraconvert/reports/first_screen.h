// What is to be known of many configurations at first sight: which of them need hands, and why.
#pragma once

#include "reports/header.h"
#include "reports/totals.h"

#include <string>

namespace infraconvert {

// Totals, causes with an example each, the worst configurations; some forty lines at most.
std::string first_screen(const header_t &header, const totals_t &totals);

// The totals alone, for where the report itself goes elsewhere.
std::string totals_lines(const header_t &header, const totals_t &totals);

// Of one configuration: what became of it.
std::string states_table(const header_t &header, const totals_t &totals);

} // namespace infraconvert
