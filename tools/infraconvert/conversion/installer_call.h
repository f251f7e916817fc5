// One installer call for one service, in a child process.
#pragma once

#include "conversion/services.h"

#include <filesystem>

namespace infraconvert {

struct call_result_t {
    bool came_back = false;
    uint32_t status = 0; // of the converter, when the call came back
    std::string trouble; // otherwise, what became of the child
};

struct call_t {
    std::filesystem::path directory; // whose ascii/system.cfg, a scratch copy, is converted
    std::filesystem::path logs;      // directory for the logs, the output and the errors; exists
    release_pair_t releases;
    const service_t &service;
    bool quiet; // without the log, which can be many times the size of the configuration
};

// Has the library convert. A crash of the child is a result, not an error; throws run_error when
// the program for the child is missing.
call_result_t call_installer(const call_t &call);

} // namespace infraconvert
