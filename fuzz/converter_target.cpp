// One call of a converter, built once for each of them. An input is
//
//     FROM TO SWITCH
//     configuration ...
//
// with "-" for a release that is not passed. Whatever it holds, the converter returns, leaves the
// file as it was or whole and new, and nothing beside it.

#include "check.h"

#include "assoc/assoc_engine.h"
#include "fc_port_sec/fcportsec_engine.h"
#include "fwm/fwmcnv_engine.h"
#include "include/libinfraconvertascii.h"
#include "ipqosmgr/qosmgrcnv_engine.h"
#include "npiv/npiv_engine.h"
#include "satmgr/satcnv_engine.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace {

struct converter_t {
    std::string_view name;
    convertascii_startup_fn start;
    engine::engine_t &engine;
    boolean *debug_switch;
};

constexpr converter_t converters[] = {
    {"qos", ipqosmgr_infra_convert_startup, qoscnv_engine, &qosmgrcnv_debug},
    {"fcportsec", fcportsec_infra_convert_startup, fcportsec_engine, &fcportsec_debug},
    {"npiv", npiv_infra_convert_startup, npiv_engine, &npiv_debug},
    {"fwm", fwm_infra_convert_startup, fwmcnv_engine, &fwmcnv_debug},
    {"assoc", assoc_infra_convert_startup, assoc_engine, nullptr},
    {"satmgr", satmgr_infra_convert_startup, satcnv_engine, &satcnv_debug},
};

const converter_t &converter() {
    for (const converter_t &c : converters) {
        if (c.name == CONVERTER)
            return c;
    }
    abort();
}

struct request_t {
    std::string from, to;
    boolean debug_switch = 0;
    std::string configuration;

    explicit request_t(std::string_view input) {
        const size_t newline = std::min(input.find('\n'), input.size());
        std::istringstream fields{std::string(input.substr(0, newline))};
        fields >> from >> to >> debug_switch;
        configuration = input.substr(std::min(newline + 1, input.size()));
    }
};

const char *release(const std::string &text) { return text == "-" ? nullptr : text.c_str(); }

// The saved text is also shown: on standard output up to the end marker, or by the converter of the
// VLANs in its log up to the first zero byte.
bool was_shown(const std::string &file, const std::string &output, const std::string &log) {
    if (converter().debug_switch)
        return file == output;
    return log.find("Printing ASCII file ...\n" + file.substr(0, file.find('\0'))) != log.npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::place_t place;
    static const std::string log_path =
        converter().debug_switch ? std::string("/dev/null") : place.log_path();
    const request_t request({reinterpret_cast<const char *>(data), size});
    place.set_configuration(request.configuration);

    // Without this a release field would keep its value from the input before.
    engine::engine_t &e = converter().engine;
    e.from = e.to = {};
    e.log_path = log_path.c_str();
    if (converter().debug_switch)
        *converter().debug_switch = request.debug_switch;

    const syserr_t status =
        converter().start(place.path(), "package", release(request.to), release(request.from));
    const std::string file = place.configuration();
    const std::string output = place.taken_output();
    const std::string log = converter().debug_switch ? "" : fuzz::read_file(log_path);

    fuzz::claim(status == 0 || status == engine::failure, "the status is 0 or -1");
    const bool is_old = file == request.configuration;
    if (status != 0)
        fuzz::claim(is_old && output.empty(), "after a failure the file is the old one");
    else
        fuzz::claim((is_old && output.empty()) || was_shown(file, output, log),
                    "after a success the file is the old one or the one that was shown");
    fuzz::claim(place.holds_only_the_configuration(), "nothing is left beside the file");
    return 0;
}
