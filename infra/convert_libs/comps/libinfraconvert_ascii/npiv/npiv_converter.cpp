// Turns every "npiv enable" into "feature npiv" on the way up across 4.1(3)K2(1), and back on the
// way down.

#include "npiv/npiv_converter.h"

#include "include/libinfraconvertascii.h"
#include "npiv/npiv_engine.h"

namespace {

constexpr char enable[] = "npiv enable";
constexpr char feature[] = "feature npiv";

syserr_t npiv_change_enable_to_feature() {
    return engine::replace_all(npiv_engine, __func__,
                               {.wanted = enable,
                                .replacement = feature,
                                .found = "found npiv enable",
                                .deleted = "found npiv"});
}

syserr_t npiv_change_feature_to_enable() {
    return engine::replace_all(npiv_engine, __func__,
                               {.wanted = feature,
                                .replacement = enable,
                                .found = "found feature npiv",
                                .deleted = nullptr});
}

syserr_t npiv_convert_ascii_4_1_3_K_2_1_upgrade() {
    npiv_log("entering npiv upgrade function...\n");
    return npiv_change_enable_to_feature();
}

syserr_t npiv_convert_ascii_4_1_3_K_2_1_downgrade() {
    npiv_log("entering npiv downgrade function...\n");
    return npiv_change_feature_to_enable();
}

constexpr engine::rule_t rules[] = {
    {.id = "IC-NPIV-01",
     .plain_words = "turns every \"npiv enable\" into \"feature npiv\"",
     .applies =
         [] {
             return (npiv_ver_to_eq_4_1_3_K_2_1() || npiv_ver_to_gt_4_1_3_K_2_1()) &&
                    npiv_ver_from_lt_4_1_3_K_2_1();
         },
     .pipeline = npiv_convert_ascii_4_1_3_K_2_1_upgrade},
    {.id = "IC-NPIV-02",
     .plain_words = "turns every \"feature npiv\" back into \"npiv enable\"",
     .applies =
         [] {
             return (npiv_ver_from_eq_4_1_3_K_2_1() || npiv_ver_from_gt_4_1_3_K_2_1()) &&
                    npiv_ver_to_lt_4_1_3_K_2_1();
         },
     .pipeline = npiv_convert_ascii_4_1_3_K_2_1_downgrade},
};

} // namespace

constinit const engine::conversion_t npiv_conversion = {
    .engine = npiv_engine,
    .start_function = "npiv_infra_convert_startup",
    .invoked = "npiv convert_startup invoked",
    .same_release = npiv_ver_sam,
    .same_release_message = "ascii convertion not requred",
    .routing_function = "npiv_convert_ascii_4_1_3_K_2_1",
    .rules = rules,
};

syserr_t npiv_infra_convert_startup(const char *path, const char *pkg_name,
                                    const char *to_pkg_version, const char *from_pkg_version) {
    return engine::convert(npiv_conversion, {path, pkg_name, to_pkg_version, from_pkg_version});
}
