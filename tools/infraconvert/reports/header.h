// What a report as a whole is about: the head of the stream of records.
#pragma once

#include "conversion/route.h"

#include <string>
#include <vector>

namespace infraconvert {

struct header_t {
    std::string tool_version, date; // ISO 8601, UTC
    route_t route;                  // as asked for: its first release is empty where each
                                    // configuration has its own
    std::vector<std::string> services = {};
    bool masked = false;
    bool keep_going = false; // past services that fail
    size_t count = 0;        // how many configurations come; 0: not known
    bool details = false;    // for people: everything about each configuration, not only the sum
};

} // namespace infraconvert
