// A command of infraconvert, as the table in main.cpp holds it.
#pragma once

#include "commands/options.h"

namespace CLI {
class App;
}

namespace infraconvert {

struct command_t {
    const char *name;
    const char *summary;
    const char *examples; // one a line, without indentation
    // Declares the command's arguments, which are read into the options.
    void (*declare)(CLI::App &arguments, options_t &options);
    // Returns the exit status, or throws one of errors.h.
    int (*run)(const options_t &options);
};

extern const command_t plan_command;
extern const command_t preview_command;
extern const command_t convert_command;
extern const command_t audit_command;
extern const command_t explain_command;

} // namespace infraconvert
