// What every JSON document that the command prints begins with, and how it is printed.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace infraconvert {

nlohmann::ordered_json document_of(const char *command);
// A text that holds bytes which are no UTF-8 gets them beside it, under its key and "_base64".
std::string printed(nlohmann::ordered_json document);
// The same without: for a document whose keys are somebody else's.
std::string printed_as_is(const nlohmann::ordered_json &document);

} // namespace infraconvert
