// What every JSON document that the command prints begins with, and how it is printed.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace infraconvert {

nlohmann::ordered_json document_of(const char *command);
std::string printed(const nlohmann::ordered_json &document);

} // namespace infraconvert
