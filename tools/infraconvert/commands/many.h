// preview and convert with many configurations: each is a line of the result, whatever becomes of
// it.
#pragma once

#include "reports/window_report.h"

#include <functional>
#include <string>
#include <vector>

namespace infraconvert {

struct looked_at_t {
    window_report_t::line_t line;
    std::string details = {};         // that are shown as they come
    bool names_other_release = false; // than the one that is said to have written it
};

// What a command does with one configuration: it is called by several threads, and what it throws
// is a line too.
using with_one_t = std::function<looked_at_t(const std::string &file)>;

// Does so with all of them, and hands over the details in order. The report that it is given has no
// lines yet.
window_report_t with_each(window_report_t report, const std::vector<std::string> &files,
                          size_t jobs, const with_one_t &with_one,
                          const std::function<void(const std::string &details)> &show);

} // namespace infraconvert
