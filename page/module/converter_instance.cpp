// What an instance does that was made for the converters: it stands for the child process of
// infraconvert-run in which each converter runs once.

#include "include/libinfraconvertascii.h"

#include <cstdio>
#include <emscripten.h>

// Has one service convert ./ascii/system.cfg. Returns its status.
extern "C" EMSCRIPTEN_KEEPALIVE uint32_t run_service(uint32_t service, const char *from,
                                                     const char *to, int wants_logs) {
    qosmgrcnv_debug = fcportsec_debug = npiv_debug = fwmcnv_debug = satcnv_debug = wants_logs != 0;
    const infraconvertascii_args_t args = {
        .path = ".", .pkg_name = "infraconvert", .to_pkg_version = to, .from_pkg_version = from};
    convertascii_ret_value_t result = {service, 0};
    libinfraconvertascii_init(0);
    infraconvertascii_startup(service, &result, &args);
    fflush(nullptr); // the logs are complete when the status is told
    return result.syserr;
}
