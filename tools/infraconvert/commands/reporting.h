// What becomes of records, for whoever has some: the reports in their formats, the first screen,
// and the exit status.
#pragma once

#include "commands/common.h"
#include "reports/formats.h"

#include <memory>
#include <string>
#include <vector>

namespace infraconvert {

struct reporting_options_t {
    std::string format = "text";
    std::string fail_on = "error";
    bool details = false;
};
void declare_reporting(CLI::App &arguments, reporting_options_t &options);

class reporting_t {
  public:
    // A report on standard output as the options say, and the other ones. `before_output` is called
    // before each piece of it.
    reporting_t(
        const reporting_options_t &options, header_t head,
        std::vector<std::unique_ptr<writer_t>> others = {},
        const std::function<void()> &before_output = [] {});

    void add(const audited_t &audited);
    // Returns the exit status. `idle` is what is to be said of exceptions.
    int end(std::vector<std::string> idle);

  private:
    const reporting_options_t &options;
    header_t header;
    std::vector<std::unique_ptr<writer_t>> writers;
    totals_t totals;
    int status;
};

} // namespace infraconvert
