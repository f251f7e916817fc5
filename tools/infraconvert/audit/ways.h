// What becomes of one configuration on every way from one release to another.
//
// Hops that start from the same bytes are made once, and ways that end in the same bytes are one.
// Ways are compared by what the switch does in the end: losses are judged against the original, and
// each result also against that of the direct way, so that no difference passes in silence.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"

#include <string>
#include <vector>

namespace infraconvert {

// Routes that make the same bytes of a configuration, and what that is.
struct way_t {
    std::vector<route_t> routes; // the shortest first; what follows is told of this one
    shared_text_t result;        // of a way that fails, what its last good hop made
    std::vector<std::string> failed_hop = {}; // its two releases; none: none failed
    std::string failure = {};                 // why it did

    std::vector<finding_t> findings = {}; // each with its hop
    finding_count_t count = {};
    size_t lost = 0;       // effects that are not there any more, and lines that errors are about
    bool as_direct = true; // the switch does the same as after the direct way
    // What it does otherwise, and no finding of the two ways tells.
    std::vector<std::string> unexplained = {};

    // The same way back again.
    std::string back_failure = {};           // empty: it does not fail
    std::vector<finding_t> left_behind = {}; // errors that are there after it

    bool fails() const { return !failed_hop.empty(); }
    bool comes_back() const { return !fails() && back_failure.empty() && left_behind.empty(); }
};

// The ways of a configuration, the best first: those that do not fail, that lose least, with
// fewest hops, fewest warnings. `routes` has the direct one first. Throws what a conversion throws.
std::vector<way_t> try_ways(const shared_text_t &text,
                            const std::vector<const service_t *> &services,
                            const std::vector<route_t> &routes);

} // namespace infraconvert
