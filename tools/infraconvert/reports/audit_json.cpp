#include "reports/findings_json.h"
#include "reports/formats.h"
#include "reports/json_document.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

json configuration_json(const audited_t &audited) {
    json document = {{"path", audited.file},
                     {"state", audited.state()},
                     {"problem", audited.problem.empty() ? json(nullptr) : json(audited.problem)}};
    add_route(document, audited.route);
    document["services"] = audited.services;
    document["findings"] = findings_json(audited.findings);
    return document;
}

} // namespace

std::string audit_json(const fleet_summary_t &summary) {
    json document = document_of("audit");
    add_route(document, summary.route);
    document["states"] = summary.states;
    document["codes"] = codes_json(summary);
    document["configurations"] = json::array();
    for (const audited_t &audited : summary.results)
        document["configurations"].push_back(configuration_json(audited));
    return printed(document);
}

} // namespace infraconvert
