// How a report is made: of a stream of records, so that none need be kept.
#pragma once

#include "reports/header.h"
#include "reports/totals.h"
#include "window/audited.h"

#include <functional>
#include <string_view>

namespace infraconvert {

// Where a report goes. What it is given has left the command when it returns.
using output_t = std::function<void(std::string_view)>;

// One report in one format. It is told of the head, of each record in order, and of the end.
class writer_t {
  public:
    writer_t() = default;
    writer_t(const writer_t &) = delete;
    writer_t &operator=(const writer_t &) = delete;
    virtual ~writer_t() = default;

    virtual void begin(const header_t &header) = 0;
    virtual void add(const audited_t &audited) = 0;
    virtual void end(const totals_t &totals) = 0;
};

} // namespace infraconvert
