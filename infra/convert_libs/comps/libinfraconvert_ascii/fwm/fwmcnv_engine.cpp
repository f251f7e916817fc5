#include "fwm/fwmcnv_engine.h"

#include "engine/watchers.h"
#include "include/libinfraconvertascii.h"

using engine::triple;

boolean fwmcnv_debug = 0;
FILE *fwmcnv_err_fp = nullptr;

constinit engine::engine_t fwmcnv_engine = {
    .prefix = "fwmcnv",
    .log_path = "/mnt/pss/fwmcnv.log",
    .debug_switch = &fwmcnv_debug,
    .log_stream = &fwmcnv_err_fp,
    .traces_edits = true,
};

void fwmcnv_log_init() { engine::log_init(fwmcnv_engine); }
void fwmcnv_log_cleanup() { engine::log_cleanup(fwmcnv_engine); }
bool fwmcnv_read_versions(const char *from_version, const char *to_version) {
    return engine::read_versions(fwmcnv_engine, from_version, to_version);
}
syserr_t fwmcnv_read_ascii_file(const char *path) {
    return engine::read_ascii_file(fwmcnv_engine, path);
}
syserr_t fwmcnv_write_ascii_file(const char *path) {
    return engine::write_ascii_file(fwmcnv_engine, path);
}
void fwmcnv_print_ascii_file() { engine::print_ascii_file(fwmcnv_engine); }

void fwmcnv_delete_text(engine::position_t from, uint32_t size) {
    engine::delete_text(fwmcnv_engine, from, size);
}
bool fwmcnv_insert_text(engine::position_t from, std::string_view text) {
    return engine::insert_text(fwmcnv_engine, from, text);
}
bool fwmcnv_replace_text(engine::position_t from, uint32_t size, std::string_view text) {
    return engine::replace_text(fwmcnv_engine, from, size, text);
}
syserr_t fwmcnv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                              uint32_t extra_after_chars) {
    return engine::remove_regexp(fwmcnv_engine, substr, extra_before_chars, extra_after_chars);
}
syserr_t fwmcnv_remove_substring(const char *substr) {
    return engine::remove_substring(fwmcnv_engine, substr);
}

engine::position_t fwmcnv_file_start_fwmsection() {
    static engine::search_ahead_t header(fwmcnv_engine, "\nmac address-table");
    return engine::file_start_section(fwmcnv_engine, "file_start_fwmsection", "fwm", {&header});
}
engine::position_t fwmcnv_find(std::string_view wanted, engine::position_t from,
                               engine::position_t before) {
    return engine::find(fwmcnv_engine, wanted, from, before);
}
engine::position_t fwmcnv_nextline(engine::position_t cp) {
    return engine::nextline(fwmcnv_engine, cp);
}
bool fwmcnv_nextstanza(engine::position_t cp) { return engine::nextstanza(fwmcnv_engine, cp); }
engine::position_t fwmcnv_goto_nextstanza(engine::position_t cp) {
    return engine::goto_nextstanza(fwmcnv_engine, cp);
}
std::string fwmcnv_getline(engine::position_t cp, uint32_t bufsize) {
    return engine::getline(fwmcnv_engine, cp, bufsize);
}

namespace {
constexpr std::tuple release_4_1_3{4, 1, 3};
constexpr std::tuple release_4_2_1{4, 2, 1};
const engine::release_t &from = fwmcnv_engine.from;
const engine::release_t &to = fwmcnv_engine.to;
} // namespace

bool fwmcnv_ver_same() { return triple(to) == triple(from); }
bool fwmcnv_ver_to_eq_4_1_3() { return triple(to) == release_4_1_3; }
bool fwmcnv_ver_from_eq_4_1_3() { return triple(from) == release_4_1_3; }
bool fwmcnv_ver_to_lt_4_1_3() { return to.major < 4; }
bool fwmcnv_ver_from_lt_4_1_3() { return from.major < 4; }
bool fwmcnv_ver_to_eq_4_2_1() { return triple(to) == release_4_2_1; }
bool fwmcnv_ver_from_eq_4_2_1() { return triple(from) == release_4_2_1; }
bool fwmcnv_ver_from_ge_4_2_1() { return triple(from) >= release_4_2_1; }
