// The conversion of one configuration by several services, one after the other as the installer
// does it, each in a process of its own and on a private copy.
#pragma once

#include "base/diff.h"
#include "base/files.h"
#include "base/outputs.h"
#include "conversion/reasons.h"
#include "conversion/services.h"
#include "secrets/mask.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace infraconvert {

struct conversion_request_t {
    shared_text_t text;
    release_pair_t releases;
    std::vector<const service_t *> services;
    bool keep_going = false;   // the result of those that succeed counts even when others fail
    bool wants_logs = false;   // returns them
    std::string log_directory; // where to keep them; empty: nowhere
    std::shared_ptr<const outputs_t> outputs = {}; // writes them
    bool mask_logs = false;                        // hides the secrets in them
    // Fixes around the services: the text as edited before them, null for `text` as it is, and what
    // becomes of theirs afterwards.
    shared_text_t edited = {};
    std::function<std::string(const std::string &)> typed = {};
};

// The step of a line that a fix changed, not a service.
constexpr int fix_step = 1 << 20;

// What one service did.
struct step_t {
    const service_t *service;
    routing_t routing;
    count_t changed;
    std::optional<failure_t> failure;

    bool changes() const { return changed.added + changed.removed > 0; }
    // "converted", "unchanged", "no rule" or "failed".
    const char *state() const;
};

struct converted_t {
    release_pair_t releases;
    shared_text_t original, result; // the same when a service failed and nothing was to keep going
    std::vector<step_t> steps;
    script_t script;  // from the original to the result
    std::string logs; // for people to read, when wanted

    bool masked = false; // as they are shown, not as they are

    bool failed() const;
    count_t changes_of_fixes() const;
    bool changes() const { return *original != *result; }
    // The rule that a script line owes its change to, or "fix"; "-" when no step is known.
    std::string rule_of(const script_line_t &line) const;
};

// Runs the conversion. What a converter cannot do is a failure in its step. Throws run_error_t when
// the machine does not allow it, and usage_error_t when the logs cannot be kept.
converted_t run_conversion(const conversion_request_t &request);

// What may be told about the conversion.
mask_t mask_of(const converted_t &conversion);

} // namespace infraconvert
