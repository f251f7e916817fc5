// What the user sees: data on standard output, messages on standard error.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// "infraconvert: TEXT" on standard error, its control bytes to be seen.
void message(std::string_view text);
// Lines that belong to the message before them.
void message_lines(std::string_view lines);
// What moves a terminal's cursor, as it is.
void draw(std::string_view bytes);

// Writes data on standard output. Throws run_error_t when it does not take them.
void write_output(std::string_view data);
// The same where the exit status has something more important to tell: when standard output does
// not take the data, only a message says so.
void try_output(std::string_view data);

// True when standard output is one.
bool is_terminal();

// True when `mode` ("auto", "always", "never") asks for colours on standard output: "auto" on a
// terminal, unless NO_COLOR is set and not empty.
bool wants_color(const std::string &mode);

// `text` in lines of at most `width` characters, each behind the first indented by `indent`.
std::string wrapped(std::string_view text, size_t indent, size_t width = 100);

// "1 error", "3 errors".
std::string counted(size_t number, const std::string &one);

// `text` as a column of a table: padded with blanks up to `width`, with one at least behind it.
std::string column(std::string_view text, size_t width);

} // namespace infraconvert
