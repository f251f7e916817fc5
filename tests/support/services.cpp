#include "support/services.h"

#include <algorithm>
#include <stdexcept>

namespace support {

const std::vector<service_t> &services() {
    static const std::vector<service_t> all = {
        {"qos", SRVUUID_IPQOS_MGR, ipqosmgr_infra_convert_startup, &qosmgrcnv_debug, "qoscnv.log"},
        {"fcportsec", SRVUUID_PSM, fcportsec_infra_convert_startup, &fcportsec_debug,
         "fcportsec.log"},
        {"npiv", SRVUUID_NPIVP, npiv_infra_convert_startup, &npiv_debug, "npiv.log"},
        {"fwm", SRVUUID_FWM, fwm_infra_convert_startup, &fwmcnv_debug, "fwmcnv.log"},
        {"assoc", SRVUUID_ASSOC_MGR, assoc_infra_convert_startup, nullptr, "assoc_ascii_cnv.log"},
        {"satmgr", SRVUUID_SATMGR, satmgr_infra_convert_startup, &satcnv_debug, "satcnv.log"},
    };
    return all;
}

const service_t &service_named(const std::string &name) {
    const auto found = std::find_if(services().begin(), services().end(),
                                    [&](const service_t &service) { return name == service.name; });
    if (found == services().end())
        throw std::invalid_argument("no service " + name);
    return *found;
}

conversion_t convert(const service_t &service, const std::string &configuration, const char *from,
                     const char *to, boolean debug_switch) {
    const temporary_directory_t place;
    const std::string file = place.path() + "/ascii/system.cfg";
    write_file(file, configuration);
    conversion_t result;
    result.process = run_in_process([&] {
        if (service.debug_switch)
            *service.debug_switch = debug_switch;
        return static_cast<int>(service.start(place.path().c_str(), "package", to, from));
    });
    result.status = static_cast<signed char>(result.process.status);
    result.file = read_file(file);
    result.log = without_addresses(result.process.logs[service.log]);
    for (size_t at; (at = result.log.find(place.path())) != std::string::npos;)
        result.log.replace(at, place.path().size(), "<path>");
    return result;
}

} // namespace support
