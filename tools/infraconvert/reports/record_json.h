// Records and what stands around them as JSON, both ways: what is read back is what was written.
// docs/json.md describes them.
#pragma once

#include "reports/header.h"
#include "reports/totals.h"
#include "window/audited.h"

#include <nlohmann/json.hpp>

namespace infraconvert {

constexpr const char *header_kind = "infraconvert audit";
constexpr const char *totals_kind = "infraconvert totals";

nlohmann::ordered_json header_json(const header_t &header);
nlohmann::ordered_json record_json(const audited_t &audited);
nlohmann::ordered_json totals_json(const totals_t &totals);

// Throw input_error_t for what is no header or no record, or is one of a later version.
header_t header_from(const nlohmann::ordered_json &document);
audited_t record_from(const nlohmann::ordered_json &document);

} // namespace infraconvert
