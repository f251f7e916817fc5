// The QoS converter's instance of the text engine, and the engine's operations under its names;
// engine/engine.h tells what each does.
#pragma once

#include "engine/engine.h"
#include "engine/length.h"

extern engine::engine_t qoscnv_engine;

// Writes a message of the calling function.
#define qoscnv_log(...) engine::log(qoscnv_engine, __func__, __VA_ARGS__)

void qoscnv_log_init();
void qoscnv_log_cleanup();
bool qoscnv_read_versions(const char *from_version, const char *to_version);
syserr_t qoscnv_read_ascii_file(const char *path);
syserr_t qoscnv_write_ascii_file(const char *path);
void qoscnv_print_ascii_file();

void qoscnv_delete_text(engine::position_t from, uint32_t size);
[[nodiscard]] bool qoscnv_insert_text(engine::position_t from, std::string_view text);
syserr_t qoscnv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                              uint32_t extra_after_chars);
syserr_t qoscnv_remove_substring(const char *substr);

engine::position_t qoscnv_file_start_qossection();
engine::position_t qoscnv_find(std::string_view wanted, engine::position_t from,
                               engine::position_t before = engine::nowhere);
engine::position_t qoscnv_nextline(engine::position_t cp);
bool qoscnv_nextstanza(engine::position_t cp);
engine::position_t qoscnv_goto_nextstanza(engine::position_t cp);
engine::position_t qoscnv_prevline(engine::position_t cp, engine::position_t buf_start);
std::string qoscnv_getline(engine::position_t cp, uint32_t bufsize);

// Questions about the current pair of releases.
bool qoscnv_ver_same(); // product and sub-version do not count
bool qoscnv_ver_from_eq_null();
bool qoscnv_ver_to_eq_4_1_3();
bool qoscnv_ver_from_eq_4_1_3();
bool qoscnv_ver_to_lt_4_1_3();
bool qoscnv_ver_from_lt_4_1_3();
bool qoscnv_ver_to_eq_4_2_1();
bool qoscnv_ver_from_eq_4_2_1();
bool qoscnv_ver_to_gt_4_2_1();
bool qoscnv_ver_from_gt_4_2_1();
bool qoscnv_ver_to_ge_5_0_2();
bool qoscnv_ver_from_ge_5_0_2();
bool qoscnv_ver_to_eq_5_0_3();
bool qoscnv_ver_from_eq_5_0_3();
bool qoscnv_subver_to_eq_1();
bool qoscnv_subver_from_eq_1();
bool qoscnv_subver_to_eq_2();
bool qoscnv_subver_from_eq_2();
bool qoscnv_product_to_eq_U();
bool qoscnv_product_from_eq_U();
