#include "base/quoting.h"

#include <cstdio>

namespace infraconvert {

namespace {

using byte_t = unsigned char;

bool continues(std::string_view text, size_t at, byte_t low = 0x80, byte_t high = 0xBF) {
    return at < text.size() && static_cast<byte_t>(text[at]) >= low &&
           static_cast<byte_t>(text[at]) <= high;
}

// Bytes of the UTF-8 character that begins at `at`; 0 when none does. The second byte of some is
// limited: neither longer forms than needed, nor surrogates, nor anything beyond U+10FFFF.
size_t character_length(std::string_view text, size_t at) {
    const auto first = static_cast<byte_t>(text[at]);
    if (first < 0x80)
        return 1;
    const byte_t low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const byte_t high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    const size_t length = first < 0xC2   ? 0
                          : first < 0xE0 ? 2
                          : first < 0xF0 ? 3
                          : first < 0xF5 ? 4
                                         : 0;
    if (length == 0 || !continues(text, at + 1, low, high))
        return 0;
    for (size_t i = 2; i < length; i++) {
        if (!continues(text, at + i))
            return 0;
    }
    return length;
}

// Calls `plain` with each character that shows, and `other` with each byte of all others: control
// characters, those from U+0080 to U+009F too, and bytes that are no UTF-8.
template<class Plain, class Other>
void for_each_character(std::string_view text, Plain plain, Other other) {
    for (size_t at = 0; at < text.size();) {
        const auto first = static_cast<byte_t>(text[at]);
        const size_t length = character_length(text, at);
        const bool is_control = first < 0x20 || first == 0x7F ||
                                (first == 0xC2 && static_cast<byte_t>(text[at + 1]) < 0xA0);
        if (length > 0 && !is_control) {
            plain(text.substr(at, length));
            at += length;
            continue;
        }
        for (const size_t end = at + (length > 0 ? length : 1); at < end; at++)
            other(static_cast<byte_t>(text[at]));
    }
}

std::string c_escaped(byte_t byte) {
    constexpr std::string_view named = "\a\b\t\n\v\f\r", letters = "abtnvfr";
    if (const size_t at = named.find(static_cast<char>(byte)); at != named.npos)
        return std::string("\\") + letters[at];
    char octal[8];
    snprintf(octal, sizeof octal, "\\%03o", byte);
    return octal;
}

std::string caret(byte_t byte) {
    if (byte == '\n' || byte == '\t')
        return {static_cast<char>(byte)};
    if (byte < 0x80)
        return std::string("^") + static_cast<char>(byte ^ 0x40);
    char hex[8];
    snprintf(hex, sizeof hex, "<%02X>", byte);
    return hex;
}

} // namespace

std::string quoted_name(std::string_view name) {
    std::string quoted = "\"";
    bool needs_quotes = false;
    for_each_character(
        name,
        [&](std::string_view character) {
            const bool is_special = character == "\"" || character == "\\";
            needs_quotes = needs_quotes || is_special;
            quoted += is_special ? "\\" : "";
            quoted += character;
        },
        [&](byte_t byte) {
            needs_quotes = true;
            quoted += c_escaped(byte);
        });
    return needs_quotes ? quoted + '"' : std::string(name);
}

std::string visible(std::string_view text) {
    std::string shown;
    for_each_character(
        text, [&](std::string_view character) { shown += character; },
        [&](byte_t byte) { shown += caret(byte); });
    return shown;
}

std::string without_name(const std::string &file, const std::string &said) {
    const std::string name = quoted_name(file);
    if (said.starts_with(name + ": "))
        return said.substr(name.size() + 2);
    constexpr std::string_view ends = " :;,";
    const std::string framed = ' ' + said + ' ';
    for (size_t at = framed.find(' ' + name); at != framed.npos;
         at = framed.find(' ' + name, at + 1)) {
        if (ends.find(framed[at + 1 + name.size()]) != ends.npos)
            return std::string(said).replace(at, name.size(), "it");
    }
    return said;
}

bool is_utf8(std::string_view bytes) {
    for (size_t at = 0; at < bytes.size();) {
        const size_t length = character_length(bytes, at);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

} // namespace infraconvert
