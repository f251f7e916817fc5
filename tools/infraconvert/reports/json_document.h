// What every JSON document that the command prints begins with, and how it is printed.
#pragma once

#include "conversion/route.h"

#include <nlohmann/json.hpp>

#include <string>

namespace infraconvert {

constexpr int format_version = 1;

nlohmann::ordered_json document_of(const char *command);
// Adds "from", "to" and "route": null where a route has no first release of its own, or goes
// nowhere.
void add_route(nlohmann::ordered_json &document, const route_t &route);
// Null for an empty text.
nlohmann::ordered_json or_null(const std::string &text);
// A text that holds bytes which are no UTF-8 gets them beside it, under its key and "_base64".
std::string printed(nlohmann::ordered_json document);
// The same without: for a document whose keys are somebody else's.
std::string printed_as_is(const nlohmann::ordered_json &document);

} // namespace infraconvert
