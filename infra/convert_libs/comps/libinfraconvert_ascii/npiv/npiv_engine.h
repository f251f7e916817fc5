// The NPIV converter's instance of the text engine, and the engine's operations under its names;
// engine/engine.h tells what each does.
#pragma once

#include "engine/engine.h"

extern engine::engine_t npiv_engine;

// Writes a message of the calling function.
#define npiv_log(...) engine::log(npiv_engine, __func__, __VA_ARGS__)

void npiv_log_init();
void npiv_log_cleanup();
bool npiv_read_versions(const char *from_version, const char *to_version);
syserr_t npiv_read_ascii_file(const char *path);
syserr_t npiv_write_ascii_file(const char *path);
void npiv_print_ascii_file();

void npiv_delete_text(engine::position_t from, uint32_t size);
[[nodiscard]] bool npiv_insert_text(engine::position_t from, std::string_view text);
syserr_t npiv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                            uint32_t extra_after_chars);
syserr_t npiv_remove_substring(const char *substr);

engine::position_t npiv_nextline(engine::position_t cp);
bool npiv_nextstanza(engine::position_t cp);
engine::position_t npiv_goto_nextstanza(engine::position_t cp);
std::string npiv_getline(engine::position_t cp, uint32_t bufsize);

// Questions about the current pair of releases.
bool npiv_ver_sam();
bool npiv_ver_to_eq_4_1_3_K_2_1();
bool npiv_ver_from_eq_4_1_3_K_2_1();
bool npiv_ver_to_lt_4_1_3_K_2_1();   // whatever the K train
bool npiv_ver_from_lt_4_1_3_K_2_1(); // likewise
bool npiv_ver_to_gt_4_1_3_K_2_1();
bool npiv_ver_from_gt_4_1_3_K_2_1();
