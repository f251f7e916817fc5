// A conversion that was previewed, agreed on and is to be applied exactly so: releases, services,
// and digests of the configuration and of the result.
#pragma once

#include "conversion/conversion.h"

#include <string>
#include <vector>

namespace infraconvert {

struct plan_t {
    route_t route;
    std::vector<std::string> services;
    bool keep_going = false;
    std::string mend; // as the option; empty: nothing is mended
    std::string path; // of the configuration, absolute; empty: it came from standard input
    std::string input_digest, result_digest;
};

plan_t plan_of(const converted_t &conversion, const std::string &file, bool keep_going,
               const std::string &mend);

// What stands in the file that keeps the plan.
std::string plan_text(const plan_t &plan);
// Throws input_error_t, naming the file, when it cannot be read as a plan.
plan_t read_plan(const std::string &plan_file);

// Throws input_error_t when the configuration is not what the plan was made for.
void check_input(const plan_t &plan, const std::string &text);
// Throws conversion_error_t when what became of it is not.
void check_result(const plan_t &plan, const std::string &text);

} // namespace infraconvert
