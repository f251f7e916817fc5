// One call of the installer, service by service, in a child of infraconvert-run.
#pragma once

#include "runner/protocol.h"

#include <filesystem>

namespace runner {

// What infraconvert-run and its child know of a call.
struct call_t {
    int socket;
    request_t request;
    std::filesystem::path directory; // for this call alone, with the folders ascii and logs
};

// Reads the job, has each service convert directory/ascii/system.cfg once and in order, and tells
// of each, until one fails: what a process that has seen a failure does next tells nothing for
// sure. Returns the status to end this process with.
int run_job(const call_t &call);

} // namespace runner
