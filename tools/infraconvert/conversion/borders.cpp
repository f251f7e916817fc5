#include "conversion/borders.h"

#include "conversion/border_releases.h"

#include <algorithm>
#include <iterator>

namespace infraconvert {

namespace {

constexpr size_t releases = std::size(border_releases);
constexpr size_t most_stops = 2;

// For each pair of border releases, by their numbers, whether one rule applies.
class reach_t {
  public:
    reach_t(const service_t &service, const engine::rule_t &rule) {
        for (size_t from = 0; from < releases; from++) {
            for (size_t to = 0; to < releases; to++) {
                const auto rules =
                    routing_of(service, {border_releases[from], border_releases[to]}).rules;
                applies[from][to] = std::count(rules.begin(), rules.end(), &rule) > 0;
            }
        }
    }

    // The releases to or from which it applies on the way up or down.
    std::vector<size_t> others(size_t release, bool up, bool to) const {
        std::vector<size_t> numbers;
        for (size_t other = 0; other < releases; other++) {
            const bool is_older = other < release;
            if (is_older == (up == to) && other != release &&
                (to ? applies[other][release] : applies[release][other]))
                numbers.push_back(other);
        }
        return numbers;
    }

    // True when it is not the same as at the release before.
    bool changes_at(size_t release, bool up, bool to) const {
        std::vector<size_t> now = others(release, up, to), before = others(release - 1, up, to);
        const bool meets_neighbour = std::erase(now, release - 1) + std::erase(before, release) > 0;
        return now != before || meets_neighbour;
    }

  private:
    bool applies[releases][releases];
};

void add_changes(std::vector<border_t> &found, const service_t &service,
                 const engine::rule_t &rule) {
    const reach_t reach(service, rule);
    for (size_t i = 1; i < releases; i++) {
        for (const auto &[up, to] :
             {std::pair(true, true), {true, false}, {false, true}, {false, false}}) {
            if (!reach.changes_at(i, up, to))
                continue;
            border_change_t change = {up, to, &service, &rule, {}};
            for (const size_t other : reach.others(i, up, to))
                change.others.emplace_back(border_releases[other]);
            found[i].changes.push_back(std::move(change));
        }
    }
}

std::vector<border_t> found_borders() {
    std::vector<border_t> found;
    for (const char *release : border_releases)
        found.push_back({release, {}, ""});
    for (const service_t &service : services()) {
        for (const engine::rule_t &rule : service.rules)
            add_changes(found, service, rule);
    }
    for (border_t &border : found) {
        for (const inner_border_t &inner : inner_borders)
            border.within += border.release == inner.release ? inner.change : "";
        std::stable_sort(border.changes.begin(), border.changes.end(),
                         [](const border_change_t &a, const border_change_t &b) {
                             return std::pair(!a.up, !a.to) < std::pair(!b.up, !b.to);
                         });
    }
    std::erase_if(found, [](const border_t &b) { return b.changes.empty() && b.within.empty(); });
    return found;
}

// In the order of the way.
std::vector<std::string> stops_between(const std::string &from, const std::string &to) {
    const bool up = is_older(from, to);
    const std::string &oldest = up ? from : to, &newest = up ? to : from;
    std::vector<std::string> stops;
    for (const border_t &border : borders()) {
        if (is_older(oldest, border.release) && is_older(border.release, newest))
            stops.push_back(border.release);
    }
    if (!up)
        std::reverse(stops.begin(), stops.end());
    return stops;
}

void add_routes(std::vector<route_t> &routes, const route_t &so_far, const std::string &to,
                const std::vector<std::string> &stops, size_t next, size_t most) {
    routes.push_back(so_far);
    routes.back().push_back(to);
    for (size_t i = next; i < stops.size() && so_far.size() <= most; i++) {
        route_t further = so_far;
        further.push_back(stops[i]);
        add_routes(routes, further, to, stops, i + 1, most);
    }
}

// Through at most so many of the stops, in their order.
std::vector<route_t> routes_through(const std::string &from, const std::string &to,
                                    const std::vector<std::string> &stops, size_t most) {
    std::vector<route_t> routes;
    add_routes(routes, {from}, to, stops, 0, most);
    std::stable_sort(routes.begin(), routes.end(), [](const route_t &one, const route_t &other) {
        return one.size() < other.size();
    });
    return routes;
}

} // namespace

const std::vector<border_t> &borders() {
    static const std::vector<border_t> all = found_borders();
    return all;
}

std::vector<route_t> routes_between(const std::string &from, const std::string &to) {
    return routes_through(from, to, stops_between(from, to), most_stops);
}

std::vector<route_t> routes_within(const route_t &route) {
    const std::vector<std::string> stops(route.begin() + 1, route.end() - 1);
    return routes_through(route.front(), route.back(), stops, stops.size());
}

} // namespace infraconvert
