#include "reports/ways_json.h"

#include "base/digest.h"
#include "reports/findings_json.h"
#include "reports/json_document.h"

#include <algorithm>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

json back_json(const way_t &way) {
    if (way.fails())
        return nullptr;
    return {{"failure", or_null(way.back_failure)},
            {"restores", way.comes_back()},
            {"left_behind", findings_json(way.left_behind)}};
}

// Digests would tell whoever guesses a secret that the guess is right.
json result_json(const way_t &way, bool masked) {
    if (masked)
        return {{"size", nullptr}, {"sha256", nullptr}};
    return {{"size", way.result->size()}, {"sha256", sha256(*way.result)}};
}

json way_json(const way_t &way, bool masked) {
    return {{"routes", way.routes},
            {"failed_hop", way.fails() ? json(way.failed_hop) : json(nullptr)},
            {"failure", or_null(way.failure)},
            {"lost", way.lost},
            {"errors", way.count.errors},
            {"warnings", way.count.warnings},
            {"as_direct", way.as_direct},
            {"unexplained", way.unexplained},
            {"findings", findings_json(way.findings)},
            {"back", back_json(way)},
            {"result", result_json(way, masked)}};
}

json configuration_json(const traveller_result_t &result) {
    json entry = {{"path", result.file}, {"problem", or_null(result.problem)}};
    add_route(entry, result.route);
    entry["ways"] = json::array();
    for (const way_t &way : result.ways)
        entry["ways"].push_back(way_json(way, result.masked));
    return entry;
}

json choice_json(const choice_t &choice) {
    return {{"via", choice.stops.front()}, {"alike", choice.stops}, {"failing", choice.failing},
            {"losing", choice.losing},     {"best", choice.best},   {"lost", choice.lost},
            {"warnings", choice.warnings}};
}

} // namespace

std::string borders_json(const std::vector<const service_t *> &services) {
    json document = document_of("plan");
    document["releases"] = json::array();
    for (const border_t &border : borders()) {
        json entry = {{"release", border.release}, {"within", or_null(border.within)}};
        entry["changes"] = json::array();
        for (const border_change_t &change : border.changes) {
            if (std::find(services.begin(), services.end(), change.service) != services.end())
                entry["changes"].push_back({{"way", change.up ? "up" : "down"},
                                            {"end", change.to ? "to" : "from"},
                                            {"service", change.service->name},
                                            {"rule", change.rule->id},
                                            {"others", change.others}});
        }
        document["releases"].push_back(entry);
    }
    return printed(document);
}

std::string choices_json(const route_t &route, const std::vector<traveller_result_t> &results,
                         const std::vector<choice_t> &choices) {
    json document = document_of("plan");
    add_route(document, route);
    document["choices"] = json::array();
    for (const choice_t &choice : choices)
        document["choices"].push_back(choice_json(choice));
    document["configurations"] = json::array();
    for (const traveller_result_t &result : results)
        document["configurations"].push_back(configuration_json(result));
    return printed(document);
}

} // namespace infraconvert
