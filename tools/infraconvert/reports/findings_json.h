// Findings as JSON, for the commands that print JSON.
#pragma once

#include "audit/findings.h"

#include <array>
#include <nlohmann/json.hpp>

namespace infraconvert {

inline constexpr std::array fix_time_names = {"before", "after", "after_rollback"}; // by fix_time_t

nlohmann::ordered_json kind_json(const finding_kind_t &kind);
nlohmann::ordered_json fixes_json(const std::vector<fix_text_t> &fixes);
nlohmann::ordered_json findings_json(const std::vector<finding_t> &findings);
// What infraconvert explain prints for a code.
std::string kind_document(const finding_kind_t &kind);
std::string kind_document(const retired_kind_t &kind);

} // namespace infraconvert
