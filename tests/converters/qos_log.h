// What the QoS converter logs during a call.
#pragma once

#include "support/converter_process.h"

#include "include/libinfraconvertascii.h"

#include <cstdio>
#include <string>
#include <utility>

template<class Call> std::string qos_log_of(Call call) {
    const support::temporary_directory_t place;
    const std::string log = place.path() + "/log";
    err_fp = fopen(log.c_str(), "w");
    qosmgrcnv_debug = 1;
    call();
    qosmgrcnv_debug = 0;
    fclose(std::exchange(err_fp, nullptr));
    return support::without_addresses(support::read_file(log));
}
