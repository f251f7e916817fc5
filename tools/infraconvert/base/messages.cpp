#include "base/messages.h"

#include "base/errors.h"
#include "base/quoting.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace infraconvert {

void message(std::string_view text) { message_lines("infraconvert: " + std::string(text) + '\n'); }

void message_lines(std::string_view lines) { draw(visible(lines)); }

void draw(std::string_view bytes) { fwrite(bytes.data(), 1, bytes.size(), stderr); }

void write_output(std::string_view data) {
    if (fwrite(data.data(), 1, data.size(), stdout) != data.size() || fflush(stdout) != 0)
        throw run_error_t(std::string("cannot write standard output: ") + strerror(errno));
}

void try_output(std::string_view data) try { write_output(data); } catch (const run_error_t &e) {
    message(e.what());
}

bool is_terminal() { return isatty(STDOUT_FILENO); }

bool wants_color(const std::string &mode) {
    if (mode != "auto")
        return mode == "always";
    const char *refused = getenv("NO_COLOR");
    const char *terminal = getenv("TERM");
    return (!refused || !*refused) && !(terminal && strcmp(terminal, "dumb") == 0) && is_terminal();
}

std::string wrapped(std::string_view text, size_t indent, size_t width) {
    std::string result;
    size_t column = indent;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(text.size(), word.size() + 1));
        if (column > indent && column + 1 + word.size() > width) {
            result += '\n' + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            result += ' ';
            column++;
        }
        result += word;
        column += word.size();
    }
    return result;
}

std::string counted(size_t number, const std::string &one) {
    return std::to_string(number) + ' ' + one + (number == 1 ? "" : "s");
}

std::string column(std::string_view text, size_t width) {
    std::string result(text);
    result.resize(std::max(width, text.size() + 1), ' ');
    return result;
}

} // namespace infraconvert
