#include "reports/json_document.h"

namespace infraconvert {

namespace {

constexpr int format_version = 1;

} // namespace

nlohmann::ordered_json document_of(const char *command) {
    return {{"format_version", format_version}, {"command", command}};
}

// A configuration may hold bytes that are no UTF-8; they show as replacement characters.
std::string printed(const nlohmann::ordered_json &document) {
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

} // namespace infraconvert
