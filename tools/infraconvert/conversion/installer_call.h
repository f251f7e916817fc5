// The seam to the converters: these services over this text, for this pair of releases.
//
// What stands behind it keeps every service's failures to itself: a converter that crashes, hangs
// or runs out of memory is a result. No converter is ever run twice by one state of the library,
// because release fields that a text does not supply keep their values from one run to the next; so
// each call, and each hop of a chain of releases, starts from a fresh state. Several threads may
// call at once.
#pragma once

#include "base/files.h"
#include "conversion/services.h"

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace infraconvert {

struct call_t {
    shared_text_t text;
    release_pair_t releases;
    std::vector<const service_t *> services; // in the order in which they run
    bool wants_logs = false; // which can be many times the size of the configuration
    // How long one service may take; 0: long enough for any that comes to an end.
    std::chrono::seconds limit = {};
};

// What one service made of the text.
struct call_step_t {
    uint32_t status = 0; // of the converter, when it came back
    std::string trouble; // otherwise, what became of it, such as "was killed by signal 11 (...)"
    shared_text_t after; // the text before, when nothing changed or the converter did not come back
    std::string log;     // of the converter, when its status is not 0

    bool came_back() const { return trouble.empty(); }
};

struct call_result_t {
    std::vector<call_step_t> steps;          // one for each service
    std::map<std::string, std::string> logs; // by file name, when wanted
};

// Has the library convert. Throws run_error_t when the machine does not allow it.
call_result_t call_installer(const call_t &call);

} // namespace infraconvert
