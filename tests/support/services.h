// The six converters by the names that tests and golden folders use.
#pragma once

#include "include/libinfraconvertascii.h"
#include "support/converter_process.h"

#include <string>
#include <vector>

namespace support {

struct service_t {
    const char *name;
    uuid_t uuid;
    convertascii_startup_fn start;
    boolean *debug_switch; // null: always on
    const char *log;
};

const std::vector<service_t> &services();
const service_t &service_named(const std::string &name);

struct conversion_t {
    outcome_t process;
    int status = 0;
    std::string file; // as it is after the call
    std::string log;  // of the converter
};

// Converts `configuration` in a process of its own, in a directory that the log names "<path>".
conversion_t convert(const service_t &service, const std::string &configuration, const char *from,
                     const char *to, boolean debug_switch = 1);

} // namespace support
