// For the engine's own operations: a message under the operation's prefixed name.
#pragma once

#include "engine/engine.h"

namespace engine {

// Writes a message of the operation `operation`, such as "delete_text".
[[gnu::format(printf, 3, 4)]] void log_operation(const engine_t &e, const char *operation,
                                                 const char *format, ...);

} // namespace engine
