// snmp-server user admin network-admin auth md5 0x8b1a9953c4611296a827abf8c47804d7
//     becomes
// snmp-server user admin network-admin <masked>

#include "secrets/masked_text.h"

#include "secrets/harmless_lines.h"
#include "secrets/stretches.h"
#include "secrets/words.h"

#include <cctype>

namespace infraconvert {

namespace {

bool opens_stanza(std::string_view line) {
    return std::isalpha(static_cast<unsigned char>(line[0])) != 0;
}

// The line up to the end of the last of these words, or its indentation when there is none.
std::string_view up_to(std::string_view line, std::span<const std::string_view> shown) {
    if (shown.empty())
        return line.substr(0, line.find_first_not_of(word_blanks));
    const std::string_view last = shown.back();
    return line.substr(0, static_cast<size_t>(last.data() + last.size() - line.data()));
}

void append_masked(std::string &result, std::string_view line,
                   std::span<const std::string_view> words, size_t shown) {
    if (shown == words.size()) {
        result += line;
        return;
    }
    result += up_to(line, words.first(shown));
    result += shown > 0 ? " " : "";
    result += masked_mark;
    result += line.ends_with('\n') ? "\n" : "";
}

} // namespace

std::string masked_text(std::string_view text, const shown_visit_t &visit) {
    const lines_t lines = split_lines(text);
    const std::vector<bool> within = lines_within_texts(lines);
    const harmless_lines_t &harmless = harmless_lines_t::get();
    const harmless_lines_t::body_t *body = nullptr;
    std::string result;
    for (size_t i = 0; i < lines.size(); i++) {
        const words_t words = words_of(lines[i]);
        harmless_lines_t::match_t match;
        if (within[i]) {
            body = nullptr;
        } else if (opens_stanza(lines[i])) {
            match = harmless.first_line(words);
            body = match.body;
        } else if (!words.empty()) {
            match = harmless.body_line(body, words);
            body = match.body ? match.body : body;
        }
        append_masked(result, lines[i], words, match.words);
        if (visit)
            visit(lines[i], words, match.words);
    }
    return result;
}

} // namespace infraconvert
