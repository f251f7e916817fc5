// A JSON document that is written piece by piece, so that it need not be held in memory.
#pragma once

#include "reports/writer.h"

#include <nlohmann/json.hpp>

#include <string>

namespace infraconvert {

class json_stream_t {
  public:
    explicit json_stream_t(output_t out) : write(std::move(out)) {}

    void open(char bracket); // '{' or '['
    void open(const std::string &key, char bracket);
    void element(const nlohmann::ordered_json &value);
    void member(const std::string &key, const nlohmann::ordered_json &value);
    void members(const nlohmann::ordered_json &object);
    void close(); // what was opened last; behind the first of all the document ends with a newline

  private:
    void begin_value(const std::string &front);
    std::string indented(const nlohmann::ordered_json &value) const;

    output_t write;
    std::string closing; // brackets, the last one first
    bool first = true;   // within the last one
};

// A value on one line, for JSON lines.
std::string json_line(const nlohmann::ordered_json &value);

} // namespace infraconvert
