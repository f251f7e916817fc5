#include "fc_port_sec/fcportsec_engine.h"

#include "include/libinfraconvertascii.h"

using engine::quintuple;

boolean fcportsec_debug = 1;
FILE *err_fp_fc = nullptr;

constinit engine::engine_t fcportsec_engine = {
    .prefix = "fcportsec",
    .log_path = "/mnt/pss/fcportsec.log",
    .debug_switch = &fcportsec_debug,
    .log_stream = &err_fp_fc,
    .platform_keeps_k_train = true,
    .release_separator = "",
};

void fcportsec_log_init() { engine::log_init(fcportsec_engine); }
void fcportsec_log_cleanup() { engine::log_cleanup(fcportsec_engine); }
bool fcportsec_read_versions(const char *from_version, const char *to_version) {
    return engine::read_versions(fcportsec_engine, from_version, to_version);
}
syserr_t fcportsec_read_ascii_file(const char *path) {
    return engine::read_ascii_file(fcportsec_engine, path);
}
syserr_t fcportsec_write_ascii_file(const char *path) {
    return engine::write_ascii_file(fcportsec_engine, path);
}
void fcportsec_print_ascii_file() { engine::print_ascii_file(fcportsec_engine); }

void fcportsec_delete_text(engine::position_t from, uint32_t size) {
    engine::delete_text(fcportsec_engine, from, size);
}
bool fcportsec_insert_text(engine::position_t from, std::string_view text) {
    return engine::insert_text(fcportsec_engine, from, text);
}
syserr_t fcportsec_remove_regexp(const char *substr, uint32_t extra_before_chars,
                                 uint32_t extra_after_chars) {
    return engine::remove_regexp(fcportsec_engine, substr, extra_before_chars, extra_after_chars);
}
syserr_t fcportsec_remove_substring(const char *substr) {
    return engine::remove_substring(fcportsec_engine, substr);
}

engine::position_t fcportsec_nextline(engine::position_t cp) {
    return engine::nextline(fcportsec_engine, cp);
}
bool fcportsec_nextstanza(engine::position_t cp) {
    return engine::nextstanza(fcportsec_engine, cp);
}
engine::position_t fcportsec_goto_nextstanza(engine::position_t cp) {
    return engine::goto_nextstanza(fcportsec_engine, cp);
}
std::string fcportsec_getline(engine::position_t cp, uint32_t bufsize) {
    return engine::getline(fcportsec_engine, cp, bufsize);
}

namespace {
constexpr std::tuple release_4_1_3_K_1_1{4, 1, 3, 1, 1};
constexpr std::tuple release_4_1_3_K_2_1{4, 1, 3, 2, 1};
const engine::release_t &from = fcportsec_engine.from;
const engine::release_t &to = fcportsec_engine.to;
} // namespace

bool fcportsec_ver_sam() { return quintuple(to) == quintuple(from); }
bool fcportsec_ver_to_eq_4_1_3_K_2_1() { return quintuple(to) == release_4_1_3_K_2_1; }
bool fcportsec_ver_from_eq_4_1_3_K_2_1() { return quintuple(from) == release_4_1_3_K_2_1; }
bool fcportsec_ver_to_lt_4_1_3_K_2_1() { return quintuple(to) < release_4_1_3_K_2_1; }
bool fcportsec_ver_from_lt_4_1_3_K_2_1() { return quintuple(from) < release_4_1_3_K_2_1; }
bool fcportsec_ver_to_lt_4_1_3_K_1_1() { return quintuple(to) < release_4_1_3_K_1_1; }
bool fcportsec_ver_to_gt_4_1_3_K_2_1() { return quintuple(to) > release_4_1_3_K_2_1; }
bool fcportsec_ver_from_gt_4_1_3_K_2_1() { return quintuple(from) > release_4_1_3_K_2_1; }
