#include "commands/help.h"

#include "base/errors.h"
#include "base/lines.h"
#include "base/messages.h"
#include "base/suggest.h"

namespace infraconvert {

namespace {

constexpr const char *about =
    "Converts the saved configuration of a switch between software releases.\n"
    "\n"
    "Examples:\n"
    "  infraconvert plan --from '4.0(1)' --to '4.1(3)'\n"
    "  infraconvert preview --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
    "  infraconvert audit --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
    "  infraconvert convert --from '4.0(1)' --to '4.1(3)' --backup switch.cfg\n"
    "\n"
    "infraconvert help COMMAND tells about a command.\n";

// Lines of at most help_width characters, and nothing that goes without saying.
class formatter_t : public CLI::Formatter {
  public:
    formatter_t() {
        column_width(options_column);
        label("SUBCOMMAND", "COMMAND");
    }

    std::string make_option_name(const CLI::Option *option, bool is_positional) const override {
        if (is_positional)
            return option->get_name(true, false);
        std::string names;
        for (const std::string &name : option->get_snames())
            names += '-' + name + ", ";
        for (const std::string &name : option->get_lnames())
            names += "--" + name;
        return names;
    }

    // A value that may be left out stands behind "=".
    std::string make_option_opts(const CLI::Option *option) const override {
        const std::string type = option->get_type_name();
        if (type.empty())
            return "";
        return type.starts_with('=') ? '[' + type + ']' : ' ' + type;
    }

    std::string make_option_desc(const CLI::Option *option) const override {
        return described(option->get_description());
    }

    std::string make_subcommand(const CLI::App *command) const override {
        return "  " + column(command->get_name(), options_column - 2) +
               wrapped(command->get_description(), options_column, help_width) + '\n';
    }

  private:
    static constexpr size_t options_column = 24;

    // Whoever prints this indents the lines behind the first.
    static std::string described(const std::string &text) {
        return wrapped(text, 0, help_width - options_column);
    }
};

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

const command_t &command_named(std::span<const command_t *const> commands,
                               const std::string &name) {
    std::vector<std::string> names;
    for (const command_t *command : commands) {
        if (command->name == name)
            return *command;
        names.emplace_back(command->name);
    }
    throw usage_error_t("help: there is no command '" + name + "'" + suggestion(name, names));
}

std::string formatted(const CLI::App &app, const std::string &name) {
    std::string text = app.get_formatter()->make_help(&app, name, CLI::AppFormatMode::Normal);
    while (text.ends_with("\n\n"))
        text.pop_back();
    return text;
}

} // namespace

std::shared_ptr<CLI::FormatterBase> help_formatter() { return std::make_shared<formatter_t>(); }

std::string help(CLI::App &program, std::span<const command_t *const> commands,
                 const std::string &topic) {
    if (topic.empty() || topic == "help") {
        program.description(about + exit_status_help());
        return formatted(program, program.get_name());
    }
    const command_t &command = command_named(commands, topic);
    CLI::App *own = program.get_subcommand(topic);
    own->description(std::string(command.summary) + ".\n\nExamples:\n" +
                     indented(command.examples));
    own->get_help_ptr()->group(""); // whoever reads this knows it
    return formatted(*own, program.get_name() + ' ' + topic);
}

} // namespace infraconvert
