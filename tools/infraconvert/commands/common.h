// What several commands have in common.
#pragma once

#include "commands/command.h"
#include "conversion/conversion.h"

#include <CLI/CLI.hpp>

namespace infraconvert {

// Arguments that commands share.
void declare_releases(CLI::App &arguments, options_t &options);
void declare_services(CLI::App &arguments, options_t &options);
void declare_path(CLI::App &arguments, options_t &options);
void declare_json(CLI::App &arguments, options_t &options);
void declare_logs(CLI::App &arguments, options_t &options);
void declare_mask(CLI::App &arguments, options_t &options);
void declare_keep_going(CLI::App &arguments, options_t &options);

// What the options ask to convert, read and checked.
struct job_t {
    std::string file; // or standard_stream
    conversion_request_t request;
};
job_t read_job(const options_t &options);

// Converts, and shows the logs when the options ask for them.
converted_t run_job(const conversion_request_t &request);

// Name of the configuration in messages.
std::string shown_name(const std::string &file);

} // namespace infraconvert
