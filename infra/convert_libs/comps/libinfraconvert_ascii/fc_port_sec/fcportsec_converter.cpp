// "port-security enable" to "feature fc-port-security" on the way up across 4.1(3)K2(1), every
// other "port-security" to "fc-port-security", and back on the way down.

#include "fc_port_sec/fcportsec_converter.h"

#include "fc_port_sec/fcportsec_engine.h"
#include "include/libinfraconvertascii.h"

namespace {

constexpr char enable[] = "port-security enable";
constexpr char feature[] = "feature port-security";
constexpr char command[] = "port-security";
constexpr char fc_command[] = "fc-port-security";

// The pass of the name `pass`.
syserr_t replace_all(const char *pass, const engine::replacement_t &replacement) {
    engine::log(fcportsec_engine, pass, "Calling %s() ...\n", pass);
    return engine::replace_all(fcportsec_engine, pass, replacement);
}

syserr_t fcportsec_remove_fc() {
    return replace_all(__func__, {.wanted = fc_command,
                                  .replacement = command,
                                  .found = "found fc-port-security",
                                  .deleted = "found fc-port-security"});
}

syserr_t fcportsec_add_fc() {
    return replace_all(__func__, {.wanted = command,
                                  .replacement = fc_command,
                                  .found = "found port-security",
                                  .deleted = "found fc-port-security"});
}

syserr_t fcportsec_change_feature_to_enable() {
    return replace_all(__func__, {.wanted = feature,
                                  .replacement = enable,
                                  .found = "found feature port-security",
                                  .deleted = "found port-security"});
}

syserr_t fcportsec_change_enable_to_feature() {
    return replace_all(__func__, {.wanted = enable,
                                  .replacement = feature,
                                  .found = "found port-security enable",
                                  .deleted = "found port-security"});
}

// The feature line that the first pass writes gets its prefix in the second one.
syserr_t fcportsec_convert_ascii_4_1_3_K_2_1_upgrade() {
    fcportsec_log("Calling %s() ...\n", __func__);
    const syserr_t status = fcportsec_change_enable_to_feature();
    return status != 0 ? status : fcportsec_add_fc();
}

syserr_t fcportsec_convert_ascii_4_1_3_K_2_1_downgrade(bool to_lt_4_1_3_K_1_1) {
    fcportsec_log("Calling %s() ...\n", __func__);
    const syserr_t status = fcportsec_remove_fc();
    return status != 0 || !to_lt_4_1_3_K_1_1 ? status : fcportsec_change_feature_to_enable();
}

bool downgrades_across_4_1_3_K_2_1() {
    return (fcportsec_ver_from_eq_4_1_3_K_2_1() || fcportsec_ver_from_gt_4_1_3_K_2_1()) &&
           fcportsec_ver_to_lt_4_1_3_K_2_1();
}

constexpr engine::rule_t rules[] = {
    {.id = "IC-FCPS-01",
     .plain_words = "turns \"port-security enable\" into \"feature fc-port-security\" and every "
                    "other \"port-security\" into \"fc-port-security\"",
     .applies =
         [] {
             return (fcportsec_ver_to_eq_4_1_3_K_2_1() || fcportsec_ver_to_gt_4_1_3_K_2_1()) &&
                    fcportsec_ver_from_lt_4_1_3_K_2_1();
         },
     .pipeline = fcportsec_convert_ascii_4_1_3_K_2_1_upgrade},
    {.id = "IC-FCPS-02",
     .plain_words = "turns every \"fc-port-security\" into \"port-security\"",
     .applies =
         [] { return downgrades_across_4_1_3_K_2_1() && !fcportsec_ver_to_lt_4_1_3_K_1_1(); },
     .pipeline = [] { return fcportsec_convert_ascii_4_1_3_K_2_1_downgrade(false); }},
    {.id = "IC-FCPS-03",
     .plain_words = "turns every \"fc-port-security\" into \"port-security\", and \"feature "
                    "port-security\" into \"port-security enable\"",
     .applies = [] { return downgrades_across_4_1_3_K_2_1() && fcportsec_ver_to_lt_4_1_3_K_1_1(); },
     .pipeline = [] { return fcportsec_convert_ascii_4_1_3_K_2_1_downgrade(true); }},
};

} // namespace

constinit const engine::conversion_t fcportsec_conversion = {
    .engine = fcportsec_engine,
    .start_function = "fcportsec_infra_convert_startup",
    .invoked = "fcportsec convert_startup invoked",
    .same_release = fcportsec_ver_sam,
    .same_release_message = "ascii convertion not requred",
    .routing_function = "fcportsec_convert_ascii_4_1_3_K_2_1",
    .rules = rules,
};

syserr_t fcportsec_infra_convert_startup(const char *path, const char *pkg_name,
                                         const char *to_pkg_version, const char *from_pkg_version) {
    return engine::convert(fcportsec_conversion,
                           {path, pkg_name, to_pkg_version, from_pkg_version});
}
