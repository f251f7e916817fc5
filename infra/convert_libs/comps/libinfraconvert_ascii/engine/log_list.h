// For log functions that stand in front of the engine's.
#pragma once

#include "engine/engine.h"

#include <cstdarg>

namespace engine {

// Writes one message of the function `function`, as log() does.
[[gnu::format(printf, 3, 0)]] void log_list(const engine_t &e, const char *function,
                                            const char *format, va_list arguments);

} // namespace engine
