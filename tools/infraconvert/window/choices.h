// Which way for one switch, and which for all of them.
#pragma once

#include "audit/ways.h"

#include <string>
#include <vector>

namespace infraconvert {

// One configuration and its ways.
struct traveller_result_t {
    std::string file;
    route_t route;          // that is asked for, of this one
    std::string problem;    // why it could not be looked at; empty: it was
    int problem_status = 0; // exit status that the problem asks for
    size_t routes = 0;      // that were tried
    std::vector<way_t> ways;
    bool masked = false; // what is told of them

    // The way that goes through these releases, as far as they lie ahead of it.
    const way_t &through(const std::vector<std::string> &stops) const;
};

struct choices_request_t {
    route_t route; // the first release may be left out; between the two those of --via
    std::vector<const service_t *> services;
    bool forgets = false; // all but what a table of many shows
    bool mask = false;    // secrets in what is told
};

// Tries the ways of a configuration. What is wrong with it is a result like another.
traveller_result_t try_ways_of(const std::string &file, const choices_request_t &request);

// Releases on the way, as they are for every configuration, and what they come to.
struct choice_t {
    std::vector<std::vector<std::string>> stops; // that come to the same for all; shortest first
    size_t failing = 0, losing = 0, best = 0;    // configurations; those for which none loses less
    size_t lost = 0, warnings = 0;               // effects and findings of all of them

    // "directly", "via 4.1(3), 4.2(1)"
    std::string name() const;
};

// The best for all first.
std::vector<choice_t> choices_of(const std::vector<traveller_result_t> &results);

// The stops of a route in words, as choice_t::name.
std::string stops_text(const std::vector<std::string> &stops);

} // namespace infraconvert
