// The forms in which an audit is given out.
#pragma once

#include "window/fleet.h"

#include <map>
#include <string>
#include <vector>

namespace infraconvert {

// An audit as a whole.
struct fleet_summary_t {
    fleet_summary_t(const release_pair_t &pair, const std::vector<audited_t> &results);

    // For people: states, and findings by code.
    std::string table() const;

    struct code_count_t {
        size_t findings = 0, files = 0;
    };
    release_pair_t releases;
    size_t files = 0;
    std::map<std::string, size_t> states;
    std::map<std::string, code_count_t> codes;
};

std::string audit_text(const std::vector<audited_t> &results);
std::string audit_json(const fleet_summary_t &summary, const std::vector<audited_t> &results);
// Static Analysis Results Interchange Format 2.1.0.
std::string audit_sarif(const std::vector<audited_t> &results);

// The part of the page that is about one configuration, which can be given before the others are
// looked at, so that not all texts need be kept.
std::string report_details(const audited_t &audited, const converted_t &conversion, bool mask);
// Writes the page. Throws run_error.
void write_report(const std::string &file, const fleet_summary_t &summary,
                  const std::vector<audited_t> &results);

} // namespace infraconvert
