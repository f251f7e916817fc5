// The converters' logs of one conversion.
#pragma once

#include "base/outputs.h"
#include "secrets/mask.h"

#include <filesystem>
#include <map>
#include <string>

namespace infraconvert {

using logs_t = std::map<std::string, std::string>; // by file name

// All logs, each under its name. A converter that logs the saved text byte by byte gets one line
// for it. With a mask, only what it lets show.
std::string readable_logs(const logs_t &logs, const mask_t *mask);

// Writes all logs into the directory `destination`, which is made when missing: complete, or with a
// mask what it lets show, and then without what shows the saved text byte by byte. Throws as
// outputs does.
void keep_logs(const logs_t &logs, const std::filesystem::path &destination, const mask_t *mask,
               const outputs_t &outputs);

} // namespace infraconvert
