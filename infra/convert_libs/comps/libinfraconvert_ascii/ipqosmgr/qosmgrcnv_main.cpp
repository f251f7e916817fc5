// The start function of the QoS converter.

#include "include/libinfraconvertascii.h"
#include "ipqosmgr/qosmgrcnv_4_1_3.h"

syserr_t ipqosmgr_infra_convert_startup(const char *path, const char *pkg_name,
                                        const char *to_pkg_version, const char *from_pkg_version) {
    return engine::convert(qoscnv_conversion, {path, pkg_name, to_pkg_version, from_pkg_version});
}
