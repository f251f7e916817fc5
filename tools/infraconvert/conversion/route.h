// The releases that a configuration goes through, one hop after the other. Each hop is what the
// installer of its second release does to a configuration of the first one.
#pragma once

#include "conversion/releases.h"

#include <string>
#include <vector>

namespace infraconvert {

// The release that wrote the configuration, those on the way, and the one that reads it in the end.
// Of a configuration that goes nowhere, the first alone. Where options leave the first one out it
// is empty, and each configuration's own.
using route_t = std::vector<std::string>;

// How many hops the route has.
size_t hops_of(const route_t &route);
// The releases of a hop, counted from 0.
release_pair_t hop_of(const route_t &route, size_t hop);
// Its first hops.
route_t beginning_of(const route_t &route, size_t hops);
// The same hops back again.
route_t way_back(const route_t &route);
// There and back, without the release in the middle twice.
route_t there_and_back(const route_t &route);

// "4.1(2) to 4.2(1) to 5.0(3)"; "its own release to 5.0(3)" where the first is left out.
std::string route_text(const route_t &route);

// The route of a configuration of this release, when `wanted` is asked for: where the first release
// is missing, from this one on only what lies ahead of it.
route_t route_for_release(const std::string &from, const route_t &wanted);

// The route of this configuration, when `wanted` is asked for: the release of its own
// version line stands in for a first one that is missing. Throws input_error_t when there is no
// such line, or lines that contradict one another.
route_t route_for(const std::string &configuration, const route_t &wanted);

} // namespace infraconvert
