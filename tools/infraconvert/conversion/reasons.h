// Why a converter failed: its log, read back and put into plain words, with the lines of the
// configuration that are to blame.
#pragma once

#include <string>
#include <vector>

namespace infraconvert {

struct failure_t {
    std::string reason;             // in plain words
    std::vector<size_t> lines = {}; // of the configuration, from 1
    std::string log_line = {};      // that tells of the failure; empty: there is none
    size_t log_line_number = 0;     // from 1
};

// Explains the failure of a converter that left this `log` and was given this `configuration`.
// Throws run_error_t where the machine is to blame: its private copy could not be read or saved.
failure_t explain_failure(const std::string &log, const std::string &configuration);

} // namespace infraconvert
