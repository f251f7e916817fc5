// The MAC address-table converter's instance of the text engine, and the engine's operations under
// its names; engine/engine.h tells what each does.
#pragma once

#include "engine/engine.h"

extern engine::engine_t fwmcnv_engine;

// Writes a message of the calling function.
#define fwmcnv_log(...) engine::log(fwmcnv_engine, __func__, __VA_ARGS__)

void fwmcnv_log_init();
void fwmcnv_log_cleanup();
bool fwmcnv_read_versions(const char *from_version, const char *to_version);
syserr_t fwmcnv_read_ascii_file(const char *path);
syserr_t fwmcnv_write_ascii_file(const char *path);
void fwmcnv_print_ascii_file();

void fwmcnv_delete_text(engine::position_t from, uint32_t size);
[[nodiscard]] bool fwmcnv_insert_text(engine::position_t from, std::string_view text);
[[nodiscard]] bool fwmcnv_replace_text(engine::position_t from, uint32_t size,
                                       std::string_view text);
syserr_t fwmcnv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                              uint32_t extra_after_chars);
syserr_t fwmcnv_remove_substring(const char *substr);

engine::position_t fwmcnv_file_start_fwmsection();
engine::position_t fwmcnv_find(std::string_view wanted, engine::position_t from,
                               engine::position_t before = engine::nowhere);
engine::position_t fwmcnv_nextline(engine::position_t cp);
bool fwmcnv_nextstanza(engine::position_t cp);
engine::position_t fwmcnv_goto_nextstanza(engine::position_t cp);
std::string fwmcnv_getline(engine::position_t cp, uint32_t bufsize);

// Questions about the current pair of releases.
bool fwmcnv_ver_same();
bool fwmcnv_ver_to_eq_4_1_3();
bool fwmcnv_ver_from_eq_4_1_3();
bool fwmcnv_ver_to_lt_4_1_3();   // 4.0(1) does not count as older
bool fwmcnv_ver_from_lt_4_1_3(); // likewise
bool fwmcnv_ver_to_eq_4_2_1();
bool fwmcnv_ver_from_eq_4_2_1();
bool fwmcnv_ver_from_ge_4_2_1();
