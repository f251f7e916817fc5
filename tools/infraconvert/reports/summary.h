// The account of a conversion on standard error: one line per service, then the failures.
#pragma once

#include "conversion/conversion.h"

#include <string>

namespace infraconvert {

// Tells what each service did to the configuration `name`, and why those that failed did so.
void tell_summary(const std::string &name, const converted_t &conversion);

// Which rules each service has for the route, and what they do, for plan.
std::string plan_table(const std::vector<const service_t *> &services, const route_t &route);

} // namespace infraconvert
