// The FC port-security converter's instance of the text engine, and the engine's operations under
// its names; engine/engine.h tells what each does.
#pragma once

#include "engine/engine.h"

extern engine::engine_t fcportsec_engine;

// Writes a message of the calling function.
#define fcportsec_log(...) engine::log(fcportsec_engine, __func__, __VA_ARGS__)

void fcportsec_log_init();
void fcportsec_log_cleanup();
bool fcportsec_read_versions(const char *from_version, const char *to_version);
syserr_t fcportsec_read_ascii_file(const char *path);
syserr_t fcportsec_write_ascii_file(const char *path);
void fcportsec_print_ascii_file();

void fcportsec_delete_text(engine::position_t from, uint32_t size);
[[nodiscard]] bool fcportsec_insert_text(engine::position_t from, std::string_view text);
syserr_t fcportsec_remove_regexp(const char *substr, uint32_t extra_before_chars,
                                 uint32_t extra_after_chars);
syserr_t fcportsec_remove_substring(const char *substr);

engine::position_t fcportsec_nextline(engine::position_t cp);
bool fcportsec_nextstanza(engine::position_t cp);
engine::position_t fcportsec_goto_nextstanza(engine::position_t cp);
std::string fcportsec_getline(engine::position_t cp, uint32_t bufsize);

// Questions about the current pair of releases.
bool fcportsec_ver_sam();
bool fcportsec_ver_to_eq_4_1_3_K_2_1();
bool fcportsec_ver_from_eq_4_1_3_K_2_1();
bool fcportsec_ver_to_lt_4_1_3_K_2_1();
bool fcportsec_ver_from_lt_4_1_3_K_2_1();
bool fcportsec_ver_to_lt_4_1_3_K_1_1();
bool fcportsec_ver_to_gt_4_1_3_K_2_1();
bool fcportsec_ver_from_gt_4_1_3_K_2_1();
