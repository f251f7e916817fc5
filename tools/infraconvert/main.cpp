// infraconvert: what a release change does to a saved configuration, and then the change itself.

#include "base/errors.h"
#include "base/interruption.h"
#include "base/lines.h"
#include "base/messages.h"
#include "base/suggest.h"
#include "commands/effects.h"
#include "reports/command_json.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <map>
#include <unistd.h>

namespace infraconvert {
namespace {

constexpr const command_t *commands[] = {&plan_command,  &preview_command, &convert_command,
                                         &audit_command, &effects_command, &explain_command};

constexpr const char *about =
    "Converts the saved configuration of a switch between software releases.\n"
    "\n"
    "Examples:\n"
    "  infraconvert plan --from '4.0(1)' --to '4.1(3)'\n"
    "  infraconvert preview --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
    "  infraconvert audit --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
    "  infraconvert convert --from '4.0(1)' --to '4.1(3)' --backup switch.cfg\n"
    "\n"
    "infraconvert COMMAND --help tells about a command.\n";

// Behind what the program's help says about itself.
std::string exit_status_help() {
    std::string text = "\nExit status, the first that applies:\n";
    for (const exit_status_t &status : exit_statuses)
        text += "  " + std::to_string(status.number) + "  " + status.meaning + '\n';
    return text;
}

std::string indented(const std::string &lines) {
    std::string text;
    for (const std::string_view line : split_lines(lines))
        text += "  " + std::string(line);
    return text;
}

// Help of the command at hand, examples first; without one, of the program.
std::string help(CLI::App &arguments) {
    for (const command_t *command : commands) {
        CLI::App *own = arguments.get_subcommand(command->name);
        if (arguments.got_subcommand(own))
            own->description(std::string(command->summary) + ".\n\nExamples:\n" +
                             indented(command->examples));
    }
    return arguments.help();
}

// The names that may stand where a word was not understood.
std::vector<std::string> names_like(const CLI::App &arguments, const std::string &word) {
    std::vector<std::string> names;
    if (word.starts_with("-")) {
        for (const CLI::Option *option : arguments.get_options()) {
            for (const std::string &name : option->get_lnames())
                names.push_back("--" + name);
        }
    } else {
        for (const CLI::App *command : arguments.get_subcommands({}))
            names.push_back(command->get_name());
    }
    return names;
}

// What is wrong, with the words that were not understood and what they may have meant.
std::string usage_problem(const CLI::App &arguments, const CLI::ParseError &error) {
    const auto chosen = arguments.get_subcommands();
    const CLI::App &at = chosen.empty() ? arguments : *chosen[0];
    std::vector<std::string> words = at.remaining();
    std::stable_partition(words.begin(), words.end(),
                          [](const std::string &word) { return word.starts_with("-"); });
    if (words.empty())
        return error.what();
    const std::string word = words[0].substr(0, words[0].find('='));
    const char *kind = word.starts_with("-") ? "unknown option '"
                       : chosen.empty()      ? "unknown command '"
                                             : "one argument too many: '";
    return kind + word + "'" + suggestion(word, names_like(at, word));
}

int report(const std::string &command, bool json, const std::string &error, int exit_status) {
    message(error);
    if (json)
        try_output(error_json(command, error, exit_status));
    return exit_status;
}

bool wants_json(const CLI::App &command) {
    const CLI::Option *option = command.get_option_no_throw("--json");
    return option && option->as<bool>();
}

// Runs a command whose arguments are read.
int run(const CLI::App &command, const std::function<int()> &run_command) try {
    return run_command();
} catch (const command_error_t &e) {
    return report(command.get_name(), wants_json(command), e.what(), e.exit_status);
} catch (const std::exception &e) {
    return report(command.get_name(), wants_json(command), e.what(), exit_trouble);
}

int parse_and_run(int argc, char **argv) {
    CLI::App arguments(about + exit_status_help(), "infraconvert");
    arguments.get_formatter()->column_width(26);
    arguments.set_version_flag("--version", "infraconvert " INFRACONVERT_VERSION);
    arguments.require_subcommand(0, 1);
    std::map<const CLI::App *, std::function<int()>> run_of;
    for (const command_t *command : commands) {
        CLI::App *own = arguments.add_subcommand(command->name, command->summary);
        run_of[own] = command->declare(*own);
    }
    try {
        arguments.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        write_output(help(arguments));
        return exit_done;
    } catch (const CLI::CallForVersion &) {
        write_output("infraconvert " INFRACONVERT_VERSION "\n");
        return exit_done;
    } catch (const CLI::ParseError &e) {
        message(usage_problem(arguments, e));
        return exit_usage;
    }
    const auto chosen = arguments.get_subcommands();
    if (!chosen.empty())
        return run(*chosen[0], run_of[chosen[0]]);
    message_lines(arguments.help());
    return exit_usage;
}

} // namespace
} // namespace infraconvert

int main(int argc, char **argv) {
    infraconvert::handle_interruptions();
    try {
        return infraconvert::parse_and_run(argc, argv);
    } catch (const infraconvert::interrupted_t &) { // the last who writes a file ends the command
        for (;;)
            pause();
    } catch (const std::exception &e) { // beyond the commands, such as without memory
        fprintf(stderr, "infraconvert: %s\n", e.what());
    }
    return infraconvert::exit_trouble;
}
