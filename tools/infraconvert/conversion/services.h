// The services that have a converter, and what their converters do for a pair of releases.
//
// Both come from the library: the services from its registry, the rules from the tables that the
// converters route by. What stands here is what people call them.
#pragma once

#include "conversion/releases.h"
#include "engine/conversion.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace infraconvert {

struct service_t {
    const char *name;          // on the command line
    const char *title;         // in sentences
    const char *platform_name; // on the switch
    uint32_t uuid;
    const char *log_name;                  // of its log file
    std::span<const engine::rule_t> rules; // which of them apply is asked with routing_of()
};

// All services, in the order in which they run.
const std::vector<service_t> &services();

// The services of these names, in the order in which they run; all for none or "all". A name may
// also be the platform's or the identifier. Throws usage_error_t for a name that no service has.
std::vector<const service_t *> services_named(const std::vector<std::string> &names);

// What a converter does for a pair of releases.
struct routing_t {
    std::vector<const engine::rule_t *> rules; // that apply
    std::string why_none;                      // when there is none

    // Identifiers of the rules, or "-".
    std::string ids() const;
    // What they do, or why none applies.
    std::string words() const;
};

// Asks the converter. Threads may ask at the same time.
routing_t routing_of(const service_t &service, const release_pair_t &releases);

} // namespace infraconvert
