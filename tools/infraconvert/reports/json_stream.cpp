#include "reports/json_stream.h"

#include "base/exact_text.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

constexpr int indent = 2;

} // namespace

void json_stream_t::begin_value(const std::string &front) {
    const std::string blanks(closing.size() * indent, ' ');
    write((first ? "" : ",") + std::string(closing.empty() ? "" : "\n") + blanks + front);
    first = false;
}

void json_stream_t::open(char bracket) {
    begin_value(std::string(1, bracket));
    closing += bracket == '{' ? '}' : ']';
    first = true;
}

void json_stream_t::open(const std::string &key, char bracket) {
    begin_value(dumped(json(key)) + ": " + bracket);
    closing += bracket == '{' ? '}' : ']';
    first = true;
}

// Texts in JSON hold no newline as such, so each one that is dumped ends a line.
std::string json_stream_t::indented(const json &value) const {
    std::string lines;
    for (const char byte : dumped(value, indent)) {
        lines += byte;
        if (byte == '\n')
            lines.append(closing.size() * indent, ' ');
    }
    return lines;
}

void json_stream_t::element(const json &value) { begin_value(indented(value)); }

void json_stream_t::member(const std::string &key, const json &value) {
    begin_value(dumped(json(key)) + ": " + indented(value));
}

void json_stream_t::members(const json &object) {
    for (const auto &[key, value] : object.items())
        member(key, value);
}

void json_stream_t::close() {
    const char bracket = closing.back();
    closing.pop_back();
    const std::string blanks(closing.size() * indent, ' ');
    write((first ? "" : "\n" + blanks) + bracket + (closing.empty() ? "\n" : ""));
    first = false;
}

std::string json_line(const json &value) { return dumped(value) + '\n'; }

} // namespace infraconvert
