// For tests of how time grows with the size, whatever else the machine does.
#pragma once

#include <sys/resource.h>

namespace support {

// Processor time of the processes that this one has waited for.
inline double seconds_of_children() {
    rusage used = {};
    getrusage(RUSAGE_CHILDREN, &used);
    const auto seconds = [](const timeval &t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

} // namespace support
