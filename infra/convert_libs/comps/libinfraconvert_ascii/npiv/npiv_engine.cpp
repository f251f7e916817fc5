#include "npiv/npiv_engine.h"

#include "include/libinfraconvertascii.h"

using engine::quintuple;
using engine::triple;

boolean npiv_debug = 1;
FILE *npiv_err_fp_fc = nullptr;

constinit engine::engine_t npiv_engine = {
    .prefix = "npiv",
    .log_path = "/mnt/pss/npiv.log",
    .debug_switch = &npiv_debug,
    .log_stream = &npiv_err_fp_fc,
    .platform_keeps_k_train = true,
    .release_separator = "",
};

void npiv_log_init() { engine::log_init(npiv_engine); }
void npiv_log_cleanup() { engine::log_cleanup(npiv_engine); }
bool npiv_read_versions(const char *from_version, const char *to_version) {
    return engine::read_versions(npiv_engine, from_version, to_version);
}
syserr_t npiv_read_ascii_file(const char *path) {
    return engine::read_ascii_file(npiv_engine, path);
}
syserr_t npiv_write_ascii_file(const char *path) {
    return engine::write_ascii_file(npiv_engine, path);
}
void npiv_print_ascii_file() { engine::print_ascii_file(npiv_engine); }

void npiv_delete_text(engine::position_t from, uint32_t size) {
    engine::delete_text(npiv_engine, from, size);
}
bool npiv_insert_text(engine::position_t from, std::string_view text) {
    return engine::insert_text(npiv_engine, from, text);
}
syserr_t npiv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                            uint32_t extra_after_chars) {
    return engine::remove_regexp(npiv_engine, substr, extra_before_chars, extra_after_chars);
}
syserr_t npiv_remove_substring(const char *substr) {
    return engine::remove_substring(npiv_engine, substr);
}

engine::position_t npiv_nextline(engine::position_t cp) {
    return engine::nextline(npiv_engine, cp);
}
bool npiv_nextstanza(engine::position_t cp) { return engine::nextstanza(npiv_engine, cp); }
engine::position_t npiv_goto_nextstanza(engine::position_t cp) {
    return engine::goto_nextstanza(npiv_engine, cp);
}
std::string npiv_getline(engine::position_t cp, uint32_t bufsize) {
    return engine::getline(npiv_engine, cp, bufsize);
}

namespace {
constexpr std::tuple release_4_1_3{4, 1, 3};
constexpr std::tuple release_4_1_3_K_2_1{4, 1, 3, 2, 1};
const engine::release_t &from = npiv_engine.from;
const engine::release_t &to = npiv_engine.to;
} // namespace

bool npiv_ver_sam() { return quintuple(to) == quintuple(from); }
bool npiv_ver_to_eq_4_1_3_K_2_1() { return quintuple(to) == release_4_1_3_K_2_1; }
bool npiv_ver_from_eq_4_1_3_K_2_1() { return quintuple(from) == release_4_1_3_K_2_1; }
bool npiv_ver_to_lt_4_1_3_K_2_1() { return triple(to) < release_4_1_3; }
bool npiv_ver_from_lt_4_1_3_K_2_1() { return triple(from) < release_4_1_3; }
bool npiv_ver_to_gt_4_1_3_K_2_1() { return quintuple(to) > release_4_1_3_K_2_1; }
bool npiv_ver_from_gt_4_1_3_K_2_1() { return quintuple(from) > release_4_1_3_K_2_1; }
