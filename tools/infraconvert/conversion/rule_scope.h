// Which pairs of releases a rule applies to, asked of the rule itself.
#pragma once

#include "conversion/services.h"

#include <string>
#include <vector>

namespace infraconvert {

// Each of the releases `from` goes with each of the releases `to`. All are border releases, and
// those of one list follow one another among these.
struct scope_t {
    std::vector<std::string> from, to;
};

std::vector<scope_t> scope_of(const service_t &service, const engine::rule_t &rule);

// The rule of this identifier, whatever its case, and its service. Throws usage_error_t.
struct found_rule_t {
    const service_t *service;
    const engine::rule_t *rule;
};
found_rule_t rule_named(const std::string &id);

} // namespace infraconvert
