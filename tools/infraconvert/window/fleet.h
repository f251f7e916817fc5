// Many configurations, examined one like the other.
#pragma once

#include "conversion/conversion.h"
#include "mending/mend.h"
#include "window/audited.h"
#include "window/exceptions.h"

#include <functional>

namespace infraconvert {

struct fleet_t {
    std::vector<std::string> files;
    conversion_request_t request; // its text is each file's in turn
    bool rollback = false;        // judge the way there and back
    shared_text_t result = {};    // judge this one instead of converting the only file
    bool form_alone = false;      // judge the files as they are; the request goes nowhere
    size_t jobs = 1;
    bool mask = false;              // secrets in what is recorded
    exceptions_t *agreed = nullptr; // marks what was agreed on
    // Makes the details of a record; called by several threads. None: records have no details.
    std::function<details_t(const converted_t &)> describe;
    // Keeps the fixes of a configuration that has some, with its text; called by several threads.
    std::function<void(const audited_t &, const mending::mended_t &, const std::string &original)>
        keep_fixes;
};

// Examines one configuration. What cannot be used is a record like another.
audited_t examine(const fleet_t &fleet, const std::string &file);

// Examines all files, several at a time, and hands the records over in the order of the files, one
// by one as they come, in the thread that called.
void examine_all(const fleet_t &fleet, const std::function<void(const audited_t &)> &take);

} // namespace infraconvert
