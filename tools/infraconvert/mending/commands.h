// Lines as an engineer types them on a switch, and what they make of a saved configuration.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace infraconvert::mending {

struct typed_line_t {
    std::string text;     // with its indentation: "  class voice", "    priority"
    bool removes = false; // it goes: typed with "no" in front
};

// A stanza's first line and what is typed below it.
struct command_t {
    enum how_t {
        enter,  // go into the stanza, which is made when there is none
        apart,  // a stanza of its own, ahead of the first of its kind
        remove, // the stanza goes, with the lines below
    };

    std::string header;
    how_t how = enter;
    std::vector<typed_line_t> body = {};
    // The lines of the stanza in the original, by their words: where a line that comes back
    // belongs.
    std::vector<std::string> order = {};
};
using commands_t = std::vector<command_t>;

// The block that enters this stanza, which is added behind the others when there is none.
command_t &block(commands_t &commands, const std::string &header);
void remove_stanza(commands_t &commands, const std::string &header);

// Adds a line to a block unless it has it.
void add_line(commands_t &commands, const std::string &header, const std::string &line);
void remove_line(commands_t &commands, const std::string &header, const std::string &line);

// Adds an action behind its class in the block of a policy-map.
void add_action(commands_t &commands, const std::string &policy, const std::string &class_line,
                const typed_line_t &action);

// Adds everything that `more` has and `commands` has not.
void merge(commands_t &commands, const commands_t &more);

// The commands in an order that a switch takes: what is attached goes before its policy-map, maps
// stand before what uses them, and a place takes a second policy only when the first is gone.
commands_t in_order_of_typing(const commands_t &commands);

// Every line, in the order in which it is typed.
std::vector<std::string> lines_of(const commands_t &commands);

// The text that the switch saves when `text` was its configuration and the commands were typed:
// what stands already is not repeated, an action replaces the one with its keyword, and a new
// stanza goes behind the last of its kind.
std::string applied(std::string_view text, const commands_t &commands);

// The commands without what `text` has already.
commands_t without_needless(std::string_view text, const commands_t &commands);

// The commands without every line for which fewer are enough.
using is_enough_t = std::function<bool(const commands_t &)>;
commands_t without_needless(const commands_t &commands, const is_enough_t &is_enough);

} // namespace infraconvert::mending
