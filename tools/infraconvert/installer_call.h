// One installer call for one service, in a child process.
#pragma once

#include "services.h"

#include <filesystem>

namespace infraconvert {

struct call_result_t {
    bool came_back = false;
    uint32_t status = 0; // of the converter, when the call came back
    std::string trouble; // otherwise, what became of the child
};

// Has the library convert `directory`/ascii/system.cfg. Its logs, its output and its errors land in
// `logs`, which exists. A crash of the child is a result, not an error; throws run_error when the
// program for the child is missing.
call_result_t call_installer(const std::filesystem::path &directory,
                             const std::filesystem::path &logs, const release_pair_t &releases,
                             const service_t &service);

} // namespace infraconvert
