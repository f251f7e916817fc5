// The start function of the QoS converter.

#include "ipqosmgr/qosmgrcnv_main.h"

#include "include/libinfraconvertascii.h"
#include "ipqosmgr/qosmgrcnv_4_1_3.h"
#include "ipqosmgr/qosmgrcnv_engine.h"

constinit const engine::conversion_t qoscnv_conversion = {
    .engine = qoscnv_engine,
    .start_function = "ipqosmgr_infra_convert_startup",
    .invoked = "qosmgr convert_startup invoked",
    // From sub-version 2 to 1 of 5.0(3) the releases count as the same, and yet differ.
    .same_release = [] { return qoscnv_ver_same() && !qoscnv_ver_from_5_0_3_U2_to_U1(); },
    .same_release_message = "from and to versions are exactly the same; no conversion required",
    .routing_function = "qosmgr_convert_ascii_btw_diff_versions",
    .routing = qosmgr_convert_ascii_btw_diff_versions,
    .rules = qoscnv_rules,
};

syserr_t ipqosmgr_infra_convert_startup(const char *path, const char *pkg_name,
                                        const char *to_pkg_version, const char *from_pkg_version) {
    return engine::convert(qoscnv_conversion, {path, pkg_name, to_pkg_version, from_pkg_version});
}
