// The command that shows effects.
#pragma once

#include "commands/command.h"

namespace infraconvert {

extern const command_t effects_command;

} // namespace infraconvert
