#include "satmgr/satcnv_engine.h"

#include "include/libinfraconvertascii.h"

using engine::triple;

boolean satcnv_debug = 1;
FILE *satcnv_err_fp = nullptr;

constinit engine::engine_t satcnv_engine = {
    .prefix = "satcnv",
    .log_path = "/mnt/pss/satcnv.log",
    .debug_switch = &satcnv_debug,
    .log_stream = &satcnv_err_fp,
    .traces_edits = true,
    .format = engine::release_format_t::k_train_or_u,
};

void satcnv_log_init() { engine::log_init(satcnv_engine); }
void satcnv_log_cleanup() { engine::log_cleanup(satcnv_engine); }
bool satcnv_read_versions(const char *from_version, const char *to_version) {
    return engine::read_versions(satcnv_engine, from_version, to_version);
}
syserr_t satcnv_read_ascii_file(const char *path) {
    return engine::read_ascii_file(satcnv_engine, path);
}
syserr_t satcnv_write_ascii_file(const char *path) {
    return engine::write_ascii_file(satcnv_engine, path);
}
void satcnv_print_ascii_file() { engine::print_ascii_file(satcnv_engine); }

void satcnv_delete_text(engine::position_t from, uint32_t size) {
    engine::delete_text(satcnv_engine, from, size);
}
bool satcnv_insert_text(engine::position_t from, std::string_view text) {
    return engine::insert_text(satcnv_engine, from, text);
}
syserr_t satcnv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                              uint32_t extra_after_chars) {
    return engine::remove_regexp(satcnv_engine, substr, extra_before_chars, extra_after_chars);
}
syserr_t satcnv_remove_substring(const char *substr) {
    return engine::remove_substring(satcnv_engine, substr);
}

engine::position_t satcnv_find(std::string_view wanted, engine::position_t from,
                               engine::position_t before) {
    return engine::find(satcnv_engine, wanted, from, before);
}

namespace {
constexpr std::tuple release_5_0_3{5, 0, 3};
const engine::release_t &from = satcnv_engine.from;
const engine::release_t &to = satcnv_engine.to;
} // namespace

bool satcnv_ver_same() { return triple(to) == triple(from) && to.kesto_major == from.kesto_major; }
bool satcnv_swithport_swap_needed() {
    return triple(from) < release_5_0_3 && triple(to) >= release_5_0_3;
}
