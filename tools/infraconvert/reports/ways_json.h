// The ways from one release to another, as JSON.
#pragma once

#include "conversion/borders.h"
#include "window/choices.h"

#include <string>
#include <vector>

namespace infraconvert {

std::string borders_json(const std::vector<const service_t *> &services);
std::string choices_json(const route_t &route, const std::vector<traveller_result_t> &results,
                         const std::vector<choice_t> &choices);

} // namespace infraconvert
