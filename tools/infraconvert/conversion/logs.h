// The converters' logs of one conversion, read back from the directory in which they landed.
#pragma once

#include <filesystem>
#include <string>

namespace infraconvert {

// The whole log; empty when there is none.
std::string read_log(const std::filesystem::path &file);

// All logs of the directory, each under its name. A converter that logs the saved text byte by byte
// gets one line for it.
std::string readable_logs(const std::filesystem::path &directory);

// Copies all logs of the directory to `destination`, which is made when missing: complete, or with
// secrets masked and then without what shows the saved text byte by byte. Throws usage_error when
// that fails.
void keep_logs(const std::filesystem::path &directory, const std::filesystem::path &destination,
               bool mask);

} // namespace infraconvert
