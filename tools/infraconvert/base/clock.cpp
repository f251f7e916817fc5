#include "base/clock.h"

#include <ctime>

namespace infraconvert {

namespace {

std::string time_as(const char *format) {
    const time_t time = std::time(nullptr);
    tm utc = {};
    gmtime_r(&time, &utc);
    char text[sizeof "2000-01-01T00:00:00Z"];
    return {text, strftime(text, sizeof text, format, &utc)};
}

} // namespace

std::string now() { return time_as("%Y-%m-%dT%H:%M:%SZ"); }

std::string today() { return time_as("%Y-%m-%d"); }

} // namespace infraconvert
