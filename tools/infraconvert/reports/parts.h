// Parts of a report, as audit --format jsonl writes them, as one stream of records again. They may
// be of any size: one record is held at a time.
#pragma once

#include "reports/header.h"
#include "window/audited.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace infraconvert {

class parts_t {
  public:
    // Reads them once, to see that they go together. Throws input_error_t, naming the part that is
    // no such part, is not whole, or was made otherwise than the first.
    explicit parts_t(std::vector<std::string> part_files);

    // Of all; `count` tells how many records there are.
    const header_t &header() const { return whole; }

    // Hands over all records, part after part. Throws input_error_t, naming part and line.
    void for_each(const std::function<void(audited_t)> &take) const;

    // What stands in several parts, in words; empty when nothing does.
    std::string repeated() const;

    // What is to be said of exceptions that no part has met.
    const std::vector<std::string> &idle() const { return idle_in_all; }

  private:
    void look_at(const std::string &file);
    void take_idle(std::vector<std::string> said, bool is_first);

    std::vector<std::string> files;
    header_t whole = {};
    std::vector<std::string> idle_in_all;
    std::vector<uint64_t> paths; // of all configurations, as hash values: eight bytes for each
};

} // namespace infraconvert
