// One fresh state of the library: a child process of infraconvert-run.
#pragma once

#include "conversion/installer_call.h"

namespace infraconvert {

struct converter_run_t {
    struct step_t {
        uint32_t status = 0;
        shared_text_t after;
    };
    // Of the services that came back: all, or those up to the first whose status is not 0, or those
    // ahead of the one that did not come back.
    std::vector<step_t> steps;
    std::string trouble;                     // what became of one that did not come back
    std::map<std::string, std::string> logs; // by file name, when wanted
};

// Runs the services of the call in order until one ends badly, each once. Throws run_error_t when
// the machine does not allow it.
converter_run_t run_converters(const call_t &call);

} // namespace infraconvert
