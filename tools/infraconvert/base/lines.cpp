#include "base/lines.h"

#include <algorithm>

namespace infraconvert {

lines_t split_lines(std::string_view text) {
    lines_t lines;
    lines.reserve(static_cast<size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
    while (!text.empty()) {
        const size_t newline = text.find('\n');
        const size_t length = newline == text.npos ? text.size() : newline + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

std::string_view without_newline(std::string_view line) {
    return line.ends_with('\n') ? line.substr(0, line.size() - 1) : line;
}

} // namespace infraconvert
