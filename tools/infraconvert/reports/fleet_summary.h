// An audit as a whole: what became of the configurations, and how often which code was found.
#pragma once

#include "window/fleet.h"

#include <map>
#include <string>
#include <vector>

namespace infraconvert {

struct fleet_summary_t {
    // `audited` must outlive the object.
    fleet_summary_t(const route_t &way, const std::vector<audited_t> &audited);

    // For people: states, and findings by code.
    std::string table() const;

    struct code_count_t {
        const finding_kind_t *kind = nullptr;
        size_t findings = 0, files = 0;
    };
    route_t route; // without its first release where each configuration has its own
    const std::vector<audited_t> &results;
    std::map<std::string, size_t> states;
    std::map<std::string, code_count_t> codes;
};

} // namespace infraconvert
