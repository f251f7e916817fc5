// What several commands have in common.
#pragma once

#include "commands/command.h"
#include "conversion/conversion.h"
#include "window/configurations.h"
#include "window/exceptions.h"

#include <CLI/CLI.hpp>

#include <set>

namespace infraconvert {

// For options whose text must not be empty, such as the names of files.
extern const CLI::Validator not_empty;

// The releases of a route, as written.
struct route_options_t {
    std::string from; // empty: of each configuration's own version line
    std::string to;   // empty: nowhere
    std::vector<std::string> via;
};

// The same, checked. Throws usage_error_t.
route_t checked_route(const route_options_t &options);

// The route of this one configuration, which is told, if wanted, where it comes from its version
// line. Throws input_error_t.
route_t told_route_for(const std::string &name, const std::string &configuration,
                       const route_t &wanted, bool tells = true);

// Arguments that commands share, each read into the option that is given.
void declare_route(CLI::App &arguments, route_options_t &route);
void declare_services(CLI::App &arguments, std::vector<std::string> &services);
// Many configurations: paths, folders, and a list of them.
struct paths_t {
    std::vector<std::string> given;
    std::string list; // a file, or standard_stream; empty: none
};
void declare_paths(CLI::App &arguments, paths_t &paths);
void declare_jobs(CLI::App &arguments, size_t &jobs);
void declare_accept(CLI::App &arguments, std::vector<std::string> &accept);
void declare_json(CLI::App &arguments, bool &json);
// Of a command with several formats, of which one is "json".
void declare_json(CLI::App &arguments, std::string &format);
void declare_logs(CLI::App &arguments, bool &log, std::string &log_dir);
void declare_mask(CLI::App &arguments, bool &mask);
void declare_keep_going(CLI::App &arguments, bool &keep_going);
void declare_mend(CLI::App &arguments, std::string &mend);

// The options of a command that converts one configuration.
struct job_options_t {
    std::string path; // a configuration, a directory with it, or "-"
    route_options_t releases;
    std::vector<std::string> services; // as written; empty: all
    bool keep_going = false;           // past services that fail
    bool json = false;
    bool mask = false;   // secrets in what is shown
    bool log = false;    // the converters' logs, on standard error
    std::string log_dir; // keeps them
    std::string mend;    // codes, or "all"; empty: nothing is mended
    bool alone = true;   // what there is to say of the configuration beside its result is said
};

// The files that the paths stand for, one at least. What was passed by within folders is said.
// Throws usage_error_t, and input_error_t for a list that cannot be read.
std::vector<std::string> files_of(const paths_t &paths);

// The paths themselves, with those of the list. Throws input_error_t for a list that cannot be
// read.
std::vector<std::string> paths_as_given(const paths_t &paths);

// Warns of the exceptions that are of no use.
void tell_idle(const exceptions_t &exceptions);

// What the options ask to convert, read and checked.
struct job_t {
    std::string file; // or standard_stream
    std::shared_ptr<outputs_t> outputs;
    conversion_request_t request;
    bool mends = false;
    std::set<std::string> mended_codes = {}; // empty: all
};
job_t read_job(const job_options_t &options);

// Converts, mends what the job asks for, and shows the logs when the options ask for them.
converted_t run_job(const job_t &job);

// The codes that "--mend" names: none for "all". Throws usage_error_t for one that does not exist.
std::set<std::string> codes_to_mend(const std::string &mend);

// Name of the configuration: as it is, and quoted for messages.
std::string plain_name(const std::string &file);
std::string shown_name(const std::string &file);

} // namespace infraconvert
