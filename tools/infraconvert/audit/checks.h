// The checks that make up an audit. Each looks at one kind of loss and adds what it finds.
#pragma once

#include "audit/findings.h"
#include "audit/stanzas.h"
#include "conversion/conversion.h"

#include <array>
#include <string>
#include <vector>

namespace infraconvert {

// Major, minor, patch, and the two numbers behind K, which are 0 without it.
using release_numbers_t = std::array<int, 5>;
release_numbers_t parse_release(const std::string &text);

constexpr release_numbers_t release_typed = {4, 1, 3, 0, 0}; // from here on maps have types

class audit_t {
  public:
    explicit audit_t(const converted_t &conversion);

    // True when this service had a rule for the pair of releases and did its work.
    bool ran(const std::string &service) const;
    // The configuration crosses into typed maps, or out of them.
    bool becomes_typed() const { return ran("qos") && from < release_typed; }
    bool becomes_untyped() const { return ran("qos") && to < release_typed; }

    // Adds a finding; the lines are counted from 0.
    using numbers_t = std::vector<size_t>;
    void add(finding_code_t code, const std::string &detail, const numbers_t &before_lines,
             const numbers_t &after_lines);

    const converted_t &conversion;
    const release_numbers_t from, to;
    const document_t before, after;
    const qos_t qos_before, qos_after;
    std::vector<finding_t> findings;
};

void check_failures(audit_t &audit);
void check_traps(audit_t &audit); // in the original
void check_version_line(audit_t &audit);
// The following compare the original with the result.
void check_outside_lines(audit_t &audit);
void check_spelling(audit_t &audit);
void check_vlans(audit_t &audit);
void check_fabric_extenders(audit_t &audit);
void check_references(audit_t &audit);
void check_maps(audit_t &audit);
void check_actions(audit_t &audit);
void check_attachments(audit_t &audit);
void check_mtu(audit_t &audit);
void check_coverage(audit_t &audit);
void check_second_run(audit_t &audit);

} // namespace infraconvert
