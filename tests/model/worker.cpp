// Converts one case after the other for compare.py, each in a process of its own. A case is a line
//
//     SERVICE SWITCH DIRECTORY FROM TO
//
// with the configuration in DIRECTORY/ascii/system.cfg and tabs between the fields. Writes the
// library's standard output and log to DIRECTORY/output and DIRECTORY/log, and the status as a line
// on standard output.

#include "include/libinfraconvertascii.h"
#include "support/converter_process.h"

#include <iostream>
#include <sstream>

// In place of the library's stand-in, so that the model need not know that one's texts.
const char *syserr2str(syserr_t status) {
    static char text[32];
    snprintf(text, sizeof text, "syserr 0x%x", status);
    return text;
}

namespace {

struct service_t {
    const char *name;
    convertascii_startup_fn start;
    boolean *debug_switch;
    const char *log;
};

const service_t services[] = {
    {"qos", ipqosmgr_infra_convert_startup, &qosmgrcnv_debug, "qoscnv.log"},
    {"fcportsec", fcportsec_infra_convert_startup, &fcportsec_debug, "fcportsec.log"},
    {"npiv", npiv_infra_convert_startup, &npiv_debug, "npiv.log"},
    {"fwm", fwm_infra_convert_startup, &fwmcnv_debug, "fwmcnv.log"},
    {"assoc", assoc_infra_convert_startup, nullptr, "assoc_ascii_cnv.log"},
    {"satmgr", satmgr_infra_convert_startup, &satcnv_debug, "satcnv.log"},
};

} // namespace

int main() {
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream fields(line);
        std::string name, on, directory, from, to;
        for (std::string *field : {&name, &on, &directory, &from, &to})
            std::getline(fields, *field, '\t');
        for (const service_t &service : services) {
            if (name != service.name)
                continue;
            auto outcome = support::run_in_process([&] {
                if (service.debug_switch)
                    *service.debug_switch = static_cast<boolean>(std::stoul(on));
                return static_cast<int>(
                    service.start(directory.c_str(), "package", to.c_str(), from.c_str()));
            });
            support::write_file(directory + "/output", outcome.output);
            support::write_file(directory + "/log",
                                support::without_addresses(outcome.logs[service.log]));
            std::cout << (outcome.crashed ? -99 : static_cast<signed char>(outcome.status))
                      << std::endl;
        }
    }
}
