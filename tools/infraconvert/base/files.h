// Reading configurations, and plain files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace infraconvert {

// The bytes of a text that several may look at, its lines included.
using shared_text_t = std::shared_ptr<const std::string>;

// Name of standard input and standard output in place of a file.
constexpr const char *standard_stream = "-";

// Below a directory that the user or the installer names.
constexpr const char *configuration_in_directory = "ascii/system.cfg";

// The bytes of a file. Throws input_error_t, naming the file, when it cannot be read; run_error_t
// when that is for lack of memory or descriptors.
std::string read_file(const std::string &path);

// True when what there is to read of an open file is exactly these bytes.
bool holds(int descriptor, std::string_view bytes);

// The file that the user means with `path`: itself, or for a directory its ascii/system.cfg.
std::string configuration_file(const std::string &path);

// The folder in which a file stands, "." for a name alone.
std::filesystem::path folder_of(const std::string &file);

// A file of more megabytes cannot be a configuration, unless somebody says so: no switch saves more
// than some ten of them.
constexpr uint64_t usual_megabytes = 64;
constexpr uint64_t most_megabytes = 4095; // that the converters take
// For the whole process, while the arguments are read.
void set_most_megabytes(uint64_t megabytes);

// The configuration in `file`, which may be standard_stream. Throws as read_file does, and when it
// is too large, or when the converters would not see all of it: an empty one, a zero byte, a
// 0xFF byte. Of one that is too large no more is read than shows it.
shared_text_t read_configuration(const std::string &file);

} // namespace infraconvert
