// A change window: which configurations are converted how, and what comes out, as it was looked at
// and agreed on. It holds no text of a configuration; its digests are those of plan_folder_t.
#pragma once

#include "audit/findings.h"
#include "conversion/route.h"

#include <string>
#include <vector>

namespace infraconvert {

enum class planned_state_t {
    ready,     // is converted when the plan is applied
    unchanged, // the conversion changes nothing
    refused,   // something would be lost, and that was not agreed on
    failed,    // a service fails
    unusable,  // could not be read
    blocked,   // the machine was in the way of looking at it; another try may succeed
};

// An exception that findings met, so that they do not stop the conversion.
struct agreed_t {
    std::string code, reason, until; // reason and date may be empty
    size_t findings = 0;
};

struct planned_t {
    std::string path; // from the plan's folder
    planned_state_t state = planned_state_t::ready;
    std::string problem; // why it is unusable or blocked, without the name of the file
    route_t route;
    std::vector<std::string> rules;
    std::vector<std::string> failed_services;
    finding_count_t findings;
    std::vector<agreed_t> agreed;
    std::vector<std::string> refused; // codes of errors that were not agreed on
    bool mended = false;
    std::string input_digest, result_digest; // empty where there is none
};

struct plan_t {
    std::vector<std::string> services; // names
    bool keep_going = false;
    std::string mend;            // as the option; empty: nothing is mended
    std::string key_digest = {}; // tells whether a key is the one that the digests were made with
    std::vector<planned_t> configurations;
};

const char *state_name(planned_state_t state);

// What stands in the file that keeps the plan.
std::string plan_text(const plan_t &plan);
// Throws input_error_t, naming the file and what to do, when it cannot be read as a plan.
plan_t read_plan(const std::string &plan_file);

} // namespace infraconvert
