#include "window/choices.h"

#include "audit/masked_findings.h"
#include "base/errors.h"
#include "conversion/borders.h"
#include "window/audited.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace infraconvert {

namespace {

using stops_t = std::vector<std::string>;

stops_t stops_of(const route_t &route) { return {route.begin() + 1, route.end() - 1}; }

route_t route_through(const std::string &from, const stops_t &stops, const std::string &to) {
    route_t route = {from};
    route.insert(route.end(), stops.begin(), stops.end());
    route.push_back(to);
    return route;
}

bool is_shorter(const stops_t &a, const stops_t &b) { return a.size() < b.size(); }

// All stops that any of them tried, the shortest first.
std::vector<stops_t> all_stops(const std::vector<traveller_result_t> &results) {
    std::set<stops_t> known;
    std::vector<stops_t> stops;
    for (const traveller_result_t &result : results) {
        for (const way_t &way : result.ways) {
            for (const route_t &route : way.routes) {
                if (known.insert(stops_of(route)).second)
                    stops.push_back(stops_of(route));
            }
        }
    }
    std::stable_sort(stops.begin(), stops.end(), is_shorter);
    return stops;
}

// What a way comes to, for a table of many configurations.
using outcome_t = std::tuple<bool, size_t, size_t, bool>;
outcome_t outcome(const way_t &way) {
    return {way.fails(), way.lost, way.count.warnings, way.as_direct};
}

bool is_best(const way_t &way, const traveller_result_t &result) {
    const way_t &best = result.ways.front();
    return way.fails() == best.fails() && way.lost == best.lost;
}

void count_in(choice_t &choice, const traveller_result_t &result, const way_t &way) {
    choice.failing += way.fails();
    choice.losing += way.lost > 0;
    choice.best += is_best(way, result);
    choice.lost += way.lost;
    choice.warnings += way.count.warnings;
}

auto rank(const choice_t &choice) {
    return std::tuple(choice.failing, choice.lost, choice.stops.front().size(), choice.warnings);
}

} // namespace

const way_t &traveller_result_t::through(const stops_t &stops) const {
    const route_t own = route_for_release(route.front(), route_through("", stops, route.back()));
    return *std::find_if(ways.begin(), ways.end(), [&](const way_t &way) {
        return std::find(way.routes.begin(), way.routes.end(), own) != way.routes.end();
    });
}

traveller_result_t try_ways_of(const std::string &file, const choices_request_t &request) {
    traveller_result_t result = {.file = file, .route = request.route, .problem = {}, .ways = {}};
    try {
        const shared_text_t text = read_configuration(file);
        result.route = route_for(*text, request.route);
        const bool names_stops = hops_of(request.route) > 1;
        const auto routes = names_stops ? routes_within(result.route)
                                        : routes_between(result.route.front(), result.route.back());
        result.routes = routes.size();
        result.ways = try_ways(text, request.services, routes);
        result.masked = request.mask;
        if (request.mask)
            mask_ways(result.ways, text);
    } catch (const command_error_t &e) {
        result.problem = problem_in_words(e.what(), e.exit_status);
        result.problem_status = e.exit_status;
    } catch (const std::exception &e) { // such as no memory
        result.problem = problem_in_words(e.what(), exit_trouble);
        result.problem_status = exit_trouble;
    }
    if (request.forgets) {
        for (way_t &way : result.ways) {
            way.findings.clear();
            way.left_behind.clear();
        }
    }
    return result;
}

std::string choice_t::name() const { return stops_text(stops.front()); }

std::string stops_text(const stops_t &stops) {
    std::string text = stops.empty() ? "directly" : "via ";
    for (size_t i = 0; i < stops.size(); i++)
        text += (i > 0 ? ", " : "") + stops[i];
    return text;
}

std::vector<choice_t> choices_of(const std::vector<traveller_result_t> &results) {
    std::map<std::vector<outcome_t>, size_t> known;
    std::vector<choice_t> choices;
    for (const stops_t &stops : all_stops(results)) {
        choice_t choice;
        std::vector<outcome_t> outcomes;
        for (const traveller_result_t &result : results) {
            if (result.ways.empty())
                continue;
            const way_t &way = result.through(stops);
            outcomes.push_back(outcome(way));
            count_in(choice, result, way);
        }
        const auto [entry, is_new] = known.try_emplace(outcomes, choices.size());
        if (is_new)
            choices.push_back(choice);
        choices[entry->second].stops.push_back(stops);
    }
    std::stable_sort(choices.begin(), choices.end(),
                     [](const choice_t &a, const choice_t &b) { return rank(a) < rank(b); });
    return choices;
}

} // namespace infraconvert
