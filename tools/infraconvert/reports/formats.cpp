#include "reports/formats.h"

namespace infraconvert {

namespace {

constexpr format_t all_formats[] = {
    {"text", audit_text},
    {"json", audit_json},
    {"sarif", audit_sarif},
};

} // namespace

std::span<const format_t> formats() { return all_formats; }

} // namespace infraconvert
