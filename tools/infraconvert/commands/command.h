// A command of infraconvert, as the table in main.cpp holds it.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace infraconvert {

struct command_t {
    const char *name;
    const char *summary;
    const char *examples; // one a line, without indentation
    // Declares the command's arguments, and returns what runs the command once they are read. That
    // returns the exit status, or throws one of errors.h.
    std::function<int()> (*declare)(CLI::App &arguments);
};

extern const command_t plan_command;
extern const command_t preview_command;
extern const command_t convert_command;
extern const command_t undo_command;
extern const command_t audit_command;
extern const command_t effects_command;
extern const command_t report_command;
extern const command_t explain_command;

} // namespace infraconvert
