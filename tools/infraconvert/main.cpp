// infraconvert: what a release change does to a saved configuration, and then the change itself.

#include "base/errors.h"
#include "base/interruption.h"
#include "base/messages.h"
#include "base/suggest.h"
#include "commands/command.h"
#include "commands/help.h"
#include "reports/command_json.h"

#include <cstdio>
#include <map>
#include <unistd.h>

namespace infraconvert {
namespace {

constexpr const command_t *commands[] = {&plan_command,   &preview_command, &convert_command,
                                         &undo_command,   &audit_command,   &effects_command,
                                         &report_command, &explain_command};

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
    const std::string next = "\ninfraconvert help" + (chosen.empty() ? "" : ' ' + at.get_name()) +
                             " shows what there is";
    if (words.empty())
        return error.what() + next;
    const std::string word = words[0].substr(0, words[0].find('='));
    const char *kind = word.starts_with("-") ? "unknown option '"
                       : chosen.empty()      ? "unknown command '"
                                             : "one argument too many: '";
    const std::string meant = suggestion(word, names_like(at, word));
    return kind + word + "'" + (meant.empty() ? next : meant);
}

// Where to read on, unless the error says so itself.
void tell_next_step(const std::string &command, const std::string &error, int exit_status) {
    if (exit_status == exit_usage && error.find("infraconvert ") == error.npos)
        message_lines("infraconvert help " + command + " shows what there is\n");
}

int report(const std::string &command, bool json, const std::string &error, int exit_status) {
    message(error);
    tell_next_step(command, error, exit_status);
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

class program_t {
  public:
    program_t() : arguments("", "infraconvert") {
        arguments.formatter(help_formatter());
        arguments.set_help_flag("-h,--help",
                                "Show this help; behind a command, that of the command");
        arguments.set_version_flag("-V,--version", "infraconvert " INFRACONVERT_VERSION,
                                   "Show the version");
        arguments.require_subcommand(0, 1);
        for (const command_t *command : commands) {
            CLI::App *own =
                arguments.add_subcommand(command->name, command->summary)->group("Commands");
            run_of[own] = command->declare(*own);
        }
        declare_help();
    }

    int run_with(int argc, char **argv) try {
        arguments.parse(argc, argv);
        const auto chosen = arguments.get_subcommands();
        if (!chosen.empty())
            return run(*chosen[0], run_of[chosen[0]]);
        message_lines(help(arguments, commands, ""));
        return exit_usage;
    } catch (const CLI::CallForHelp &) {
        const auto chosen = arguments.get_subcommands();
        write_output(help(arguments, commands, chosen.empty() ? "" : chosen[0]->get_name()));
        return exit_done;
    } catch (const CLI::CallForVersion &) {
        write_output("infraconvert " INFRACONVERT_VERSION "\n");
        return exit_done;
    } catch (const CLI::ParseError &e) {
        message(usage_problem(arguments, e));
        return exit_usage;
    }

  private:
    void declare_help() {
        CLI::App *own =
            arguments.add_subcommand("help", "Show the help of a command")->group("Commands");
        own->add_option("COMMAND", topic)->type_name("");
        run_of[own] = [this] {
            write_output(help(arguments, commands, topic));
            return exit_done;
        };
    }

    CLI::App arguments;
    std::map<const CLI::App *, std::function<int()>> run_of;
    std::string topic;
};

} // namespace
} // namespace infraconvert

int main(int argc, char **argv) {
    infraconvert::handle_interruptions();
    try {
        return infraconvert::program_t().run_with(argc, argv);
    } catch (const infraconvert::interrupted_t &) { // the last who writes a file ends the command
        for (;;)
            pause();
    } catch (const std::exception &e) { // beyond the commands, such as without memory
        fprintf(stderr, "infraconvert: %s\n", e.what());
    }
    return infraconvert::exit_trouble;
}
