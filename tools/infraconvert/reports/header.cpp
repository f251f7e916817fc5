#include "reports/header.h"

#include <ctime>

namespace infraconvert {

std::string now() {
    const time_t time = std::time(nullptr);
    tm utc = {};
    gmtime_r(&time, &utc);
    char text[sizeof "2000-01-01T00:00:00Z"];
    return {text, strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

} // namespace infraconvert
