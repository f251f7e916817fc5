// What an audit can find. The codes are part of the interface: a code keeps its meaning for good,
// and new findings take new codes.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace infraconvert {

enum class severity_t { error, warning, note };
const char *severity_name(severity_t severity);

struct finding_kind_t {
    const char *code;
    severity_t severity;
    const char *title;
    const char *explanation;
    const char *advice;
};

std::span<const finding_kind_t> finding_kinds();

// The kind of this code, whatever its case; null when there is none.
const finding_kind_t *finding_kind_named(const std::string &code);

// A line of a configuration that a finding is about.
struct evidence_t {
    size_t number; // from 1
    std::string text;
};

struct finding_t {
    const finding_kind_t *kind;
    std::string detail;                    // what was found here, in one sentence or less
    std::vector<evidence_t> before, after; // lines of the original, of the result
};

struct finding_count_t {
    size_t errors = 0, warnings = 0, notes = 0;
};
finding_count_t count_findings(const std::vector<finding_t> &findings);

// "2 errors, 1 warning, 3 notes"; "no findings".
std::string count_text(const finding_count_t &count);

} // namespace infraconvert
