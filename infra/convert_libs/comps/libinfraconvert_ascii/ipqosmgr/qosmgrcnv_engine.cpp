#include "ipqosmgr/qosmgrcnv_engine.h"

#include "engine/watchers.h"
#include "include/libinfraconvertascii.h"

using engine::triple;

boolean qosmgrcnv_debug = 0;
FILE *err_fp = nullptr;

constinit engine::engine_t qoscnv_engine = {
    .prefix = "qoscnv",
    .log_path = "/mnt/pss/qoscnv.log",
    .debug_switch = &qosmgrcnv_debug,
    .log_stream = &err_fp,
    .traces_path = true,
    .dump = engine::dump_t::output_and_log,
    .format = engine::release_format_t::product,
};

void qoscnv_log_init() { engine::log_init(qoscnv_engine); }
void qoscnv_log_cleanup() { engine::log_cleanup(qoscnv_engine); }
bool qoscnv_read_versions(const char *from_version, const char *to_version) {
    return engine::read_versions(qoscnv_engine, from_version, to_version);
}
syserr_t qoscnv_read_ascii_file(const char *path) {
    return engine::read_ascii_file(qoscnv_engine, path);
}
syserr_t qoscnv_write_ascii_file(const char *path) {
    return engine::write_ascii_file(qoscnv_engine, path);
}
void qoscnv_print_ascii_file() { engine::print_ascii_file(qoscnv_engine); }

void qoscnv_delete_text(engine::position_t from, uint32_t size) {
    engine::delete_text(qoscnv_engine, from, size);
}
bool qoscnv_insert_text(engine::position_t from, std::string_view text) {
    return engine::insert_text(qoscnv_engine, from, text);
}
syserr_t qoscnv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                              uint32_t extra_after_chars) {
    return engine::remove_regexp(qoscnv_engine, substr, extra_before_chars, extra_after_chars);
}
syserr_t qoscnv_remove_substring(const char *substr) {
    return engine::remove_substring(qoscnv_engine, substr);
}

engine::position_t qoscnv_file_start_qossection() {
    static engine::search_ahead_t class_map(qoscnv_engine, "\nclass-map");
    static engine::search_ahead_t policy_map(qoscnv_engine, "\npolicy-map");
    return engine::file_start_section(qoscnv_engine, "file_start_qossection", "qos",
                                      {&class_map, &policy_map});
}
engine::position_t qoscnv_find(std::string_view wanted, engine::position_t from,
                               engine::position_t before) {
    return engine::find(qoscnv_engine, wanted, from, before);
}
engine::position_t qoscnv_nextline(engine::position_t cp) {
    return engine::nextline(qoscnv_engine, cp);
}
bool qoscnv_nextstanza(engine::position_t cp) { return engine::nextstanza(qoscnv_engine, cp); }
engine::position_t qoscnv_goto_nextstanza(engine::position_t cp) {
    return engine::goto_nextstanza(qoscnv_engine, cp);
}
engine::position_t qoscnv_prevline(engine::position_t cp, engine::position_t buf_start) {
    return engine::prevline(qoscnv_engine, cp, buf_start);
}
std::string qoscnv_getline(engine::position_t cp, uint32_t bufsize) {
    return engine::getline(qoscnv_engine, cp, bufsize);
}

namespace {
constexpr std::tuple release_null{0, 0, 0};
constexpr std::tuple release_4_1_3{4, 1, 3};
constexpr std::tuple release_4_2_1{4, 2, 1};
constexpr std::tuple release_5_0_2{5, 0, 2};
constexpr std::tuple release_5_0_3{5, 0, 3};
const engine::release_t &from = qoscnv_engine.from;
const engine::release_t &to = qoscnv_engine.to;
} // namespace

bool qoscnv_ver_same() { return triple(to) == triple(from); }
bool qoscnv_ver_from_eq_null() { return triple(from) == release_null; }
bool qoscnv_ver_to_eq_4_1_3() { return triple(to) == release_4_1_3; }
bool qoscnv_ver_from_eq_4_1_3() { return triple(from) == release_4_1_3; }
bool qoscnv_ver_to_lt_4_1_3() { return triple(to) < release_4_1_3; }
bool qoscnv_ver_from_lt_4_1_3() { return triple(from) < release_4_1_3; }
bool qoscnv_ver_to_eq_4_2_1() { return triple(to) == release_4_2_1; }
bool qoscnv_ver_from_eq_4_2_1() { return triple(from) == release_4_2_1; }
bool qoscnv_ver_to_gt_4_2_1() { return triple(to) > release_4_2_1; }
bool qoscnv_ver_from_gt_4_2_1() { return triple(from) > release_4_2_1; }
bool qoscnv_ver_to_ge_5_0_2() { return triple(to) >= release_5_0_2; }
bool qoscnv_ver_from_ge_5_0_2() { return triple(from) >= release_5_0_2; }
bool qoscnv_ver_to_eq_5_0_3() { return triple(to) == release_5_0_3; }
bool qoscnv_ver_from_eq_5_0_3() { return triple(from) == release_5_0_3; }
bool qoscnv_subver_to_eq_1() { return to.subversion == 1; }
bool qoscnv_subver_from_eq_1() { return from.subversion == 1; }
bool qoscnv_subver_to_eq_2() { return to.subversion == 2; }
bool qoscnv_subver_from_eq_2() { return from.subversion == 2; }
bool qoscnv_product_to_eq_U() { return to.product == 'U'; }
bool qoscnv_product_from_eq_U() { return from.product == 'U'; }
