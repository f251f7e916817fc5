#include "reports/json_document.h"

#include "base/exact_text.h"

namespace infraconvert {

using json = nlohmann::ordered_json;

json document_of(const char *command) {
    return {{"format_version", format_version}, {"command", command}};
}

void add_route(json &document, const route_t &route) {
    const bool knows_first = !route.empty() && !route.front().empty();
    document["from"] = knows_first ? json(route.front()) : json(nullptr);
    document["to"] = hops_of(route) > 0 ? json(route.back()) : json(nullptr);
    document["route"] = knows_first ? json(route) : json(nullptr);
}

json or_null(const std::string &text) { return text.empty() ? json(nullptr) : json(text); }

std::string printed_as_is(const json &document) { return dumped(document, 2) + '\n'; }

std::string printed(json document) {
    add_exact_bytes(document);
    return printed_as_is(document);
}

} // namespace infraconvert
