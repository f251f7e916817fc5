// What the command says of itself: one screen for the program, and one for each command.
#pragma once

#include "commands/command.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <span>

namespace infraconvert {

constexpr size_t help_width = 80;

std::shared_ptr<CLI::FormatterBase> help_formatter();

// Help of the program, whose subcommands are these commands; of the one named `topic`, when there
// is one. Throws usage_error_t for a name that none has.
std::string help(CLI::App &program, std::span<const command_t *const> commands,
                 const std::string &topic);

} // namespace infraconvert
