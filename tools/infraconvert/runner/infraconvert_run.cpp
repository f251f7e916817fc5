// infraconvert-run: one call of the installer, in a process of its own.
//
//     infraconvert-run --path DIR --logs DIR --from R --to R --service ID|all [--package NAME]
//                      [--quiet] [--scratch]
//
// Converts DIR/ascii/system.cfg with the shared library. All logs are on, with --quiet all that can
// be are off, and land in the directory for the logs, together with the file "status": one line
// "UUID STATUS" for each service that ran, both decimal. That file is written last, so it is there
// only when the call came back. With --scratch DIR need not outlive a power cut, and nothing waits
// for the disk.
//
// Exit status: 0 the call came back, 2 it could not be made.

#include "include/libinfraconvertascii.h"
#include "runner/log_redirection.h"
#include "runner/skipped_sync.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <getopt.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

constexpr const char *front_log = "infra_convertascii.log";

struct arguments_t {
    std::string path, logs, from, to, service, package = "infraconvert";
    int quiet = 0, scratch = 0;
};

arguments_t read_arguments(int argc, char **argv) {
    arguments_t arguments;
    std::string *const values[] = {&arguments.path, &arguments.logs,    &arguments.from,
                                   &arguments.to,   &arguments.service, &arguments.package};
    const option options[] = {{"path", required_argument, nullptr, 0},
                              {"logs", required_argument, nullptr, 0},
                              {"from", required_argument, nullptr, 0},
                              {"to", required_argument, nullptr, 0},
                              {"service", required_argument, nullptr, 0},
                              {"package", required_argument, nullptr, 0},
                              {"quiet", no_argument, &arguments.quiet, 1},
                              {"scratch", no_argument, &arguments.scratch, 1},
                              {nullptr, 0, nullptr, 0}};
    int index = 0;
    for (int answer; (answer = getopt_long(argc, argv, "", options, &index)) != -1;) {
        if (answer != 0)
            throw std::invalid_argument("unknown argument");
        if (optarg)
            *values[index] = optarg;
    }
    for (const std::string *value : values) {
        if (value->empty())
            throw std::invalid_argument("an argument is missing");
    }
    return arguments;
}

std::string absolute(const std::string &path) {
    char *const real = realpath(path.c_str(), nullptr);
    if (!real)
        throw std::runtime_error(path + ": " + strerror(errno));
    std::string result = real;
    free(real);
    return result;
}

void switch_logs(boolean on) {
    qosmgrcnv_debug = fcportsec_debug = npiv_debug = fwmcnv_debug = satcnv_debug = on;
}

std::string status_line(uint32_t uuid, syserr_t status) {
    return std::to_string(uuid) + ' ' + std::to_string(status) + '\n';
}

std::string convert_one(uint32_t uuid, const infraconvertascii_args_t &args) {
    if (!is_uuid_in_convertascii_startup_table(uuid))
        throw std::invalid_argument("no converter for this service");
    convertascii_ret_value_t result = {uuid, 0};
    infraconvertascii_startup(uuid, &result, &args);
    return status_line(result.uuid, result.syserr);
}

// The call for all services tells of failures in the front log only.
std::string convert_all(const std::string &logs, const infraconvertascii_args_t &args) {
    infraconvertascii_startup_all(&args);
    std::ifstream file(logs + '/' + front_log);
    const std::string log((std::istreambuf_iterator<char>(file)), {});
    std::string statuses;
    for (const auto *row = infra_convertascii_startup_table; row->fn; row++) {
        char failed[64];
        snprintf(failed, sizeof failed, "uuid = 0x%x returned error 0x", row->uuid);
        const size_t at = log.find(failed);
        const syserr_t status =
            at == log.npos ? 0
                           : static_cast<syserr_t>(strtoul(&log[at + strlen(failed)], nullptr, 16));
        statuses += status_line(row->uuid, status);
    }
    return statuses;
}

void run(const arguments_t &arguments) {
    const std::string logs = absolute(arguments.logs);
    // A relative path keeps clear of the library's limit on the length of paths.
    if (chdir(arguments.path.c_str()) != 0)
        throw std::runtime_error(arguments.path + ": " + strerror(errno));
    redirect_logs_to(logs);
    if (arguments.scratch)
        skip_syncs();
    switch_logs(arguments.quiet ? 0 : 1);
    libinfraconvertascii_init(0);
    const infraconvertascii_args_t args = {.path = ".",
                                           .pkg_name = arguments.package.c_str(),
                                           .to_pkg_version = arguments.to.c_str(),
                                           .from_pkg_version = arguments.from.c_str()};
    const std::string statuses =
        arguments.service == "all"
            ? convert_all(logs, args)
            : convert_one(static_cast<uint32_t>(std::stoul(arguments.service)), args);
    std::ofstream file(logs + "/status");
    if (!(file << statuses << std::flush))
        throw std::runtime_error("cannot write the status");
}

} // namespace

int main(int argc, char **argv) try {
    run(read_arguments(argc, argv));
    return 0;
} catch (const std::exception &e) {
    fprintf(stderr, "infraconvert-run: %s\n", e.what());
    return 2;
}
