// What changes at which release, asked of the rules; and the ways that lead past these releases.
#pragma once

#include "conversion/route.h"
#include "conversion/services.h"

#include <string>
#include <vector>

namespace infraconvert {

// A rule whose reach is another one than at the border release before.
struct border_change_t {
    bool up; // else on the way down
    bool to; // to the border release; else from it
    const service_t *service;
    const engine::rule_t *rule;
    std::vector<std::string> others; // border releases at the other end; none: the rule has ended
};

struct border_t {
    std::string release;
    std::vector<border_change_t> changes;
    std::string within; // what the same rules do otherwise from here on; empty: nothing
};

// The releases at which something changes, oldest first.
const std::vector<border_t> &borders();

// The ways from one release to another: directly, and through one or two of the border releases
// between them. The shortest first.
std::vector<route_t> routes_between(const std::string &from, const std::string &to);

// The ways through none, some or all of the stops of a route. The shortest first.
std::vector<route_t> routes_within(const route_t &route);

} // namespace infraconvert
