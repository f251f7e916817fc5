// What the commands print with --json: one object, documented in docs/json.md.
#pragma once

#include "audit/findings.h"
#include "conversion.h"
#include "rule_scope.h"

#include <string>

namespace infraconvert {

std::string plan_json(const std::vector<const service_t *> &services,
                      const release_pair_t &releases);

struct preview_json_t {
    std::string path, diff;
    const conversion_t &forward;
    std::vector<finding_t> findings;
    const conversion_t *back = nullptr; // of a rollback
};
std::string preview_json(const preview_json_t &preview);

// `written` and `backup` are empty when there is none.
std::string convert_json(const std::string &path, const conversion_t &conversion,
                         const std::vector<finding_t> &findings, const std::string &written,
                         const std::string &backup);

std::string rules_json(const std::vector<found_rule_t> &rules);

// An error that kept the command from its work.
std::string error_json(const std::string &command, const std::string &error, int exit_status);

} // namespace infraconvert
