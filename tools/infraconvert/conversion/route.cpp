#include "conversion/route.h"

#include "conversion/version_line.h"

#include <algorithm>

namespace infraconvert {

size_t hops_of(const route_t &route) { return route.empty() ? 0 : route.size() - 1; }

release_pair_t hop_of(const route_t &route, size_t hop) { return {route[hop], route[hop + 1]}; }

route_t beginning_of(const route_t &route, size_t hops) {
    return {route.begin(), route.begin() + static_cast<std::ptrdiff_t>(hops) + 1};
}

route_t way_back(const route_t &route) { return {route.rbegin(), route.rend()}; }

route_t there_and_back(const route_t &route) {
    route_t both = route;
    both.insert(both.end(), route.rbegin() + 1, route.rend());
    return both;
}

std::string route_text(const route_t &route) {
    std::string text = route.front().empty() ? "its own release" : route.front();
    for (size_t i = 1; i < route.size(); i++)
        text += " to " + route[i];
    return text;
}

namespace {

// True when a stop lies ahead of the way from `from` to `to`: of no way at all, nothing does.
bool lies_ahead(const std::string &stop, const std::string &from, const std::string &to) {
    if (is_older(from, to))
        return is_older(from, stop);
    return is_older(to, from) && is_older(stop, from);
}

} // namespace

route_t route_for_release(const std::string &from, const route_t &wanted) {
    if (!wanted.front().empty())
        return wanted;
    route_t route = wanted;
    route.front() = from;
    if (route.size() > 2)
        route.erase(
            std::remove_if(route.begin() + 1, route.end() - 1,
                           [&](const auto &stop) { return !lies_ahead(stop, from, route.back()); }),
            route.end() - 1);
    return route;
}

route_t route_for(const std::string &configuration, const route_t &wanted) {
    return wanted.front().empty()
               ? route_for_release(release_of_version_line(configuration), wanted)
               : wanted;
}

} // namespace infraconvert
