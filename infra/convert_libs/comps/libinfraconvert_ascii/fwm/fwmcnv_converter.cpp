// Turns every line that begins with "mac address-table" into one that begins with
// "mac-address-table" on the way down to 4.1(3). The way up changes nothing.

#include "fwm/fwmcnv_converter.h"

#include "fwm/fwmcnv_engine.h"
#include "include/libinfraconvertascii.h"

using engine::nowhere;
using engine::position_t;

namespace {

constexpr std::string_view new_line_start = "\nmac address-table";
constexpr std::string_view old_command = "mac-address-table";
constexpr uint32_t newline_length = 1;
constexpr uint32_t new_command_length = new_line_start.size() - newline_length;

syserr_t fwmcnv_build_macaddr_tbl_config_downgrade_to_le_4_1_3() {
    position_t found = fwmcnv_file_start_fwmsection();
    while ((found = fwmcnv_find(new_line_start, found)) != nowhere) {
        const position_t line = found + newline_length;
        fwmcnv_log("found mac address table entry  at byte %d\n", static_cast<int>(line));
        if (!fwmcnv_replace_text(line, new_command_length, old_command))
            return engine::failure;
    }
    return 0;
}

syserr_t fwm_convert_ascii_4_2_1_downgrade() {
    fwmcnv_log("entering ...\n");
    return fwmcnv_build_macaddr_tbl_config_downgrade_to_le_4_1_3();
}

constexpr engine::rule_t rules[] = {
    {.id = "IC-MAC-01",
     .plain_words = "turns every line that begins with \"mac address-table\" into one that begins "
                    "with \"mac-address-table\"",
     .applies =
         [] {
             return (fwmcnv_ver_to_lt_4_1_3() || fwmcnv_ver_to_eq_4_1_3()) &&
                    fwmcnv_ver_from_ge_4_2_1();
         },
     .pipeline = fwm_convert_ascii_4_2_1_downgrade},
};

} // namespace

constinit const engine::conversion_t fwmcnv_conversion = {
    .engine = fwmcnv_engine,
    .start_function = "fwm_infra_convert_startup",
    .invoked = "fwm convert_startup invoked",
    .same_release = fwmcnv_ver_same,
    .same_release_message = "from and to versions are exactly the same; no conversion required",
    .routing_function = "fwm_convert_ascii_btw_diff_versions",
    .rules = rules,
};

syserr_t fwm_infra_convert_startup(const char *path, const char *pkg_name,
                                   const char *to_pkg_version, const char *from_pkg_version) {
    return engine::convert(fwmcnv_conversion, {path, pkg_name, to_pkg_version, from_pkg_version});
}
