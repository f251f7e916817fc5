// For tests of how time grows with the size, whatever else the machine does.
#pragma once

#include <ctime>
#include <sys/resource.h>

namespace support {

// Processor time of this process and of those that it has waited for. Where there are no others it
// does their work itself.
inline double processor_seconds() {
    rusage children = {};
    getrusage(RUSAGE_CHILDREN, &children);
    const auto seconds = [](const timeval &t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(children.ru_utime) + seconds(children.ru_stime) +
           static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace support
