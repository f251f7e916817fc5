// The effect tables of many configurations, written as they come.
#pragma once

#include "reports/effects_report.h"
#include "reports/writer.h"

#include <memory>
#include <string>

namespace infraconvert {

// What there is to show of one configuration.
struct effects_record_t {
    std::string name; // of its file, as it is shown
    route_t route = {};
    std::string problem = {}; // why it could not be looked at
    std::string failure = {}; // why the conversion failed
    bool before = false;      // the rows are those before it, for it left nothing to compare
    effects_t rows = {};
    int status = 0; // the exit status for it
};

class effects_writer_t {
  public:
    effects_writer_t() = default;
    effects_writer_t(const effects_writer_t &) = delete;
    effects_writer_t &operator=(const effects_writer_t &) = delete;
    virtual ~effects_writer_t() = default;

    virtual void begin(const header_t &header) = 0;
    virtual void add(const effects_record_t &record) = 0;
    virtual void end() = 0;
};

// `format` is "text", "json" or "jsonl". One configuration alone is shown without what holds
// several together.
std::unique_ptr<effects_writer_t> effects_writer(const std::string &format, output_t out);

} // namespace infraconvert
