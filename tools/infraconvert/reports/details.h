// What is shown of a conversion besides its findings: what each service did, the difference, and
// what QoS does then.
#pragma once

#include "conversion/conversion.h"
#include "window/audited.h"

namespace infraconvert {

// With secrets masked if so wished. `usable`: the result counts although a service failed.
details_t details_of(const converted_t &conversion, bool usable, bool mask);

// The rows of the effect table of what a conversion makes of its original, and those that are lost;
// of the original alone where the route goes nowhere, or where the conversion failed and its result
// is not usable.
std::vector<meaning::changed_row_t> effects_of(const converted_t &conversion, bool usable,
                                               bool mask);

} // namespace infraconvert
