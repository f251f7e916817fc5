// What the engine's own operations share.
#pragma once

#include "engine/engine.h"

namespace engine {

// Writes a message of the operation `operation`, such as "delete_text".
[[gnu::format(printf, 3, 4)]] void log_operation(const engine_t &e, const char *operation,
                                                 const char *format, ...);

struct edit_t;

// Tells the watchers of the text that the edit is done.
void tell_watchers(const engine_t &e, const edit_t &edit);

} // namespace engine
