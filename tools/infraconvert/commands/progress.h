// How far a command with many configurations has come, as a bar on a terminal.
#pragma once

#include <chrono>
#include <cstddef>

namespace infraconvert {

// On standard error, when it is a terminal and the work takes a moment. For one thread.
class progress_t {
  public:
    explicit progress_t(size_t total);
    ~progress_t() { clear(); }
    progress_t(const progress_t &) = delete;
    progress_t &operator=(const progress_t &) = delete;

    // One more is done.
    void step();
    // Takes the bar away, before something else is shown.
    void clear();

  private:
    using clock_t = std::chrono::steady_clock;

    const size_t total;
    const bool shows;
    size_t done = 0;
    bool drawn = false;
    clock_t::time_point next;
};

} // namespace infraconvert
