// What the commands print with --json: one object, documented in docs/json.md.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"
#include "conversion/rule_scope.h"

#include <optional>
#include <string>

namespace infraconvert {

std::string plan_json(const std::vector<const service_t *> &services, const route_t &route);

// A conversion, whose sizes and digests count, and the same with the texts that are shown.
struct json_conversion_t {
    const converted_t &exact, &shown;
};

struct preview_json_t {
    std::string path, diff;
    json_conversion_t forward;
    std::vector<finding_t> findings;       // of a rollback those of the whole way
    std::optional<json_conversion_t> back; // of a rollback
    std::string verdict = {};              // of a rollback
};
std::string preview_json(const preview_json_t &preview);

// `written` and `backup` are empty when there is none.
std::string convert_json(const std::string &path, const json_conversion_t &conversion,
                         const std::vector<finding_t> &findings, const std::string &written,
                         const std::string &backup);

std::string rules_json(const std::vector<found_rule_t> &rules);

// An error that kept the command from its work.
std::string error_json(const std::string &command, const std::string &error, int exit_status);

} // namespace infraconvert
