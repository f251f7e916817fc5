// Many configurations at once.
#pragma once

#include "audit/findings.h"
#include "conversion/conversion.h"
#include "mending/mend.h"
#include "window/exceptions.h"

#include <functional>

namespace infraconvert {

// What became of one configuration.
struct audited_t {
    std::string file;
    route_t route;          // of this one; of a problem, as far as it is known
    std::string problem;    // why it could not be looked at; empty: it was
    int problem_status = 0; // exit status that the problem asks for
    bool failed = false;    // the conversion did
    bool changed = false;
    bool form_alone = false;           // there was nothing that could change it
    std::vector<std::string> services; // that would change it
    std::vector<finding_t> findings;
    std::string verdict; // on the way back, when it was asked about; else empty
    std::string details; // what the caller made of the conversion

    // "unusable", "failed", "changed" or "unchanged"; "checked" when nothing was to change.
    const char *state() const;
    // What a command exits with for it.
    int exit_status() const;
};

struct fleet_t {
    std::vector<std::string> files;
    conversion_request_t request; // its text is each file's in turn
    bool rollback = false;        // judge the way there and back
    shared_text_t result = {};    // judge this one instead of converting the only file
    bool form_alone = false;      // judge the files as they are; the request goes nowhere
    size_t jobs = 1;
    bool mask = false;              // secrets in the findings
    exceptions_t *agreed = nullptr; // marks what was agreed on
    // Makes the details of a configuration out of its conversion; called by several threads.
    std::function<std::string(const audited_t &, const converted_t &)> describe;
    // Keeps the fixes of a configuration that has some; called by several threads.
    std::function<void(const audited_t &, const mending::mended_t &)> keep_fixes;
    // Told how many are done; called by one thread at a time.
    std::function<void(size_t)> progress;
};

// Audits all files, in the order in which they are given. A file that cannot be used is a result
// like another.
std::vector<audited_t> audit_all(const fleet_t &fleet);

} // namespace infraconvert
