// The time of day as reports, journals and agreed exceptions write it: in UTC.
#pragma once

#include <string>

namespace infraconvert {

// "2026-11-23T09:00:00Z"
std::string now();

// "2026-11-23"
std::string today();

} // namespace infraconvert
