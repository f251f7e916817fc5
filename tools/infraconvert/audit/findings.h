// What an audit finds, and where.
#pragma once

#include "audit/finding_kinds.h"

#include <span>
#include <string>
#include <vector>

namespace infraconvert {

const char *severity_name(severity_t severity);

std::span<const finding_kind_t> finding_kinds();

// The kind of this code, whatever its case; null when there is none.
const finding_kind_t *finding_kind_named(const std::string &code);

// A code that is not found any more; null when there is none.
const retired_kind_t *retired_kind_named(const std::string &code);

// A line of a configuration that a finding is about.
struct evidence_t {
    size_t number; // from 1
    std::string text;
};

// Lines of the original, from 1, and what stands there instead.
struct replacement_t {
    size_t line, removed; // how many go from this line on; none: the text stands ahead of it
    std::string text;
};

// Lines that mend a finding, and are proved to.
struct fix_text_t {
    // Of the original before the conversion: lines with "-" or "+" in front. Else to be typed on
    // the switch after it.
    bool before;
    std::vector<std::string> lines;
    std::vector<std::string> restores;            // what they bring back, in words
    std::vector<replacement_t> replacements = {}; // of a fix before the conversion
};

struct finding_t {
    const finding_kind_t *kind;
    std::string detail;                    // what was found here, in one sentence or less
    std::vector<evidence_t> before, after; // lines of the original, of the result
    std::vector<fix_text_t> fixes = {};
    std::string by_hand = {}; // why there is no fix for an error; empty: there is, or nobody looked
};

struct finding_count_t {
    size_t errors = 0, warnings = 0, notes = 0;
};
finding_count_t count_findings(const std::vector<finding_t> &findings);

// "2 errors, 1 warning, 3 notes"; "no findings".
std::string count_text(const finding_count_t &count);

} // namespace infraconvert
