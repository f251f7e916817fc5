// The fabric-extender converter's instance of the text engine, and the engine's operations under
// its names; engine/engine.h tells what each does.
#pragma once

#include "engine/engine.h"

extern engine::engine_t satcnv_engine;

// Writes a message of the calling function.
#define satcnv_log(...) engine::log(satcnv_engine, __func__, __VA_ARGS__)

void satcnv_log_init();
void satcnv_log_cleanup();
bool satcnv_read_versions(const char *from_version, const char *to_version);
syserr_t satcnv_read_ascii_file(const char *path);
syserr_t satcnv_write_ascii_file(const char *path);
void satcnv_print_ascii_file();

void satcnv_delete_text(engine::position_t from, uint32_t size);
[[nodiscard]] bool satcnv_insert_text(engine::position_t from, std::string_view text);
syserr_t satcnv_remove_regexp(const char *substr, uint32_t extra_before_chars,
                              uint32_t extra_after_chars);
syserr_t satcnv_remove_substring(const char *substr);

engine::position_t satcnv_find(std::string_view wanted, engine::position_t from,
                               engine::position_t before = engine::nowhere);

// Questions about the current pair of releases.
bool satcnv_ver_same(); // K minor does not count
bool satcnv_swithport_swap_needed();
