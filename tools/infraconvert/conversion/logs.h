// The converters' logs of one conversion, read back from the directory in which they landed.
#pragma once

#include "base/outputs.h"
#include "secrets/mask.h"

#include <filesystem>
#include <string>

namespace infraconvert {

// The whole log; empty when there is none.
std::string read_log(const std::filesystem::path &file);

// All logs of the directory, each under its name. A converter that logs the saved text byte by byte
// gets one line for it. With a mask, only what it lets show.
std::string readable_logs(const std::filesystem::path &directory, const mask_t *mask);

// Copies all logs of the directory to `destination`, which is made when missing: complete, or with
// a mask what it lets show, and then without what shows the saved text byte by byte. Throws as
// outputs does.
void keep_logs(const std::filesystem::path &directory, const std::filesystem::path &destination,
               const mask_t *mask, const outputs_t &outputs);

} // namespace infraconvert
