// What an audit finds, and where.
#pragma once

#include "base/lines.h"
#include "meaning/finding_kinds.h"

#include <optional>
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

// When the lines of a fix are needed.
enum class fix_time_t {
    before, // the conversion, in the original: "-" or "+" in front of each
    after,  // the conversion, typed on the switch
    after_rollback,
};

// Lines that mend a finding, and are proved to.
struct fix_text_t {
    fix_time_t time;
    std::vector<std::string> lines;
    std::vector<std::string> restores;            // what they bring back, in words
    std::vector<replacement_t> replacements = {}; // of a fix before the conversion
};

// What was agreed on before: the finding does not stop a conversion.
struct agreement_t {
    std::string reason, until; // may be empty; until: YYYY-MM-DD
};

struct finding_t {
    const finding_kind_t *kind;
    std::string detail;                    // what was found here, in one sentence or less
    std::vector<evidence_t> before, after; // lines of the original, of the result
    std::vector<fix_text_t> fixes = {};
    std::string by_hand = {}; // why there is no fix for an error; empty: there is, or nobody looked
    // Each mends it, but they make different switches: why none of them is a fix.
    std::vector<fix_text_t> choices = {};
    std::string place = {}; // first line of the stanza of its first line; empty: it has no lines
    std::optional<agreement_t> accepted = {};
    // The two releases of the hop at which it happens, of a route with several.
    std::vector<std::string> hop = {};
};

// Where the stanzas of a text begin, by its lines.
class stanzas_t {
  public:
    explicit stanzas_t(const lines_t &lines);

    // Of the stanza in which this line stands, from 1: its first line, as `shown` has it.
    std::string first_line(size_t number, const lines_t &shown) const;

  private:
    std::vector<size_t> first_lines;
};

// A text by its stanzas, and its lines as they may be shown.
struct shown_text_t {
    const stanzas_t &stanzas;
    const lines_t &lines;
};

// The first line of the stanza in which the first line of a finding stands, of the original or else
// of the result: the nearest one above it that is not indented. Without blanks behind it; empty for
// a finding without lines.
std::string place_of(const finding_t &finding, const shown_text_t &before,
                     const shown_text_t &after);

// True for an error that nobody agreed to.
bool is_open_error(const finding_t &finding);

// The open ones by severity, and those that were agreed on.
struct finding_count_t {
    size_t errors = 0, warnings = 0, notes = 0, agreed = 0;
};
finding_count_t count_findings(const std::vector<finding_t> &findings);

// "2 errors, 1 warning, 3 notes, 1 agreed"; "no findings".
std::string count_text(const finding_count_t &count);

} // namespace infraconvert
