// Everything that the command line can say.
#pragma once

#include <string>
#include <vector>

namespace infraconvert {

struct options_t {
    // What is converted.
    std::string path; // a configuration, a directory with ascii/system.cfg, or "-"
    std::string from, to;
    std::vector<std::string> services; // as written; empty: all
    bool keep_going = false;           // past services that fail

    // What is shown.
    bool json = false;
    bool mask = false;   // secrets in what is shown
    bool log = false;    // the converters' logs, on standard error
    std::string log_dir; // keeps them

    // preview
    std::string color = "auto";
    size_t context = 3;
    std::vector<std::string> labels; // of the original, of the result
    bool explain = false;
    bool rollback = false;
    bool exit_code = false;
    std::string save_plan;

    // convert
    std::string output;
    std::string backup_suffix; // empty: no backup
    std::string plan;
    std::vector<std::string> accept; // codes of findings

    // audit
    std::vector<std::string> paths;
    size_t jobs = 1;
    std::string format = "text";
    std::string report; // empty: none

    // explain
    std::string rule;
};

} // namespace infraconvert
