// The ways from one release to another, for people.
#pragma once

#include "conversion/borders.h"
#include "window/choices.h"

#include <string>
#include <vector>

namespace infraconvert {

// The releases at which something changes, and what the rules in it do.
std::string borders_text(const std::vector<const service_t *> &services);

// The ways of one configuration, the best first, and what each loses at which hop.
std::string ways_text(const traveller_result_t &result);

// Ways by configurations, and which is the best for all. `choices` is what choices_of gives.
std::string choices_text(const std::vector<traveller_result_t> &results,
                         const std::vector<choice_t> &choices);

} // namespace infraconvert
