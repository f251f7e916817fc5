// The conversion of one configuration along a route: for each hop several services, one after the
// other as the installer does it, on a private copy. Each hop starts from a fresh state of the
// library, as on a switch that was started anew with its release.
#pragma once

#include "base/diff.h"
#include "base/files.h"
#include "base/outputs.h"
#include "conversion/reasons.h"
#include "conversion/route.h"
#include "conversion/services.h"
#include "secrets/mask.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace infraconvert {

struct conversion_request_t {
    shared_text_t text;
    route_t route;                           // at least two releases
    std::vector<const service_t *> services; // for each hop
    bool keep_going = false;        // the result of those that succeed counts even when others fail
    bool wants_logs = false;        // returns them
    std::string log_directory = {}; // where to keep them; empty: nowhere
    std::shared_ptr<const outputs_t> outputs = {}; // writes them
    bool mask_logs = false;                        // hides the secrets in them
    // Fixes around the route: the text as edited before it, null for `text` as it is, and what
    // becomes of its result afterwards.
    shared_text_t edited = {};
    std::function<std::string(const std::string &)> typed = {};
};

// The step of a line that a fix changed, not a service.
constexpr int fix_step = 1 << 20;

// What one service did on one hop.
struct step_t {
    const service_t *service;
    size_t hop; // from 0
    routing_t routing;
    count_t changed;
    std::optional<failure_t> failure;

    bool changes() const { return changed.added + changed.removed > 0; }
    // "converted", "unchanged", "no rule" or "failed".
    const char *state() const;
};

struct converted_t {
    route_t route = {};
    shared_text_t original, result; // the same when a service failed and nothing was to keep going
    std::vector<step_t> steps = {}; // hop by hop; none behind a hop that ended the way
    // What each hop was given, and behind them what the last one made of it.
    std::vector<shared_text_t> stages = {};
    script_t script = {};  // from the original to the result
    std::string logs = {}; // for people to read, when wanted

    bool masked = false; // as they are shown, not as they are
    bool mended = false; // by fixes around the services
    // What was masked of it already.
    std::shared_ptr<masked_texts_t> masked_texts = std::make_shared<masked_texts_t>();

    bool failed() const;
    bool has_stops() const { return hops_of(route) > 1; }
    // The text in which the step's failure names lines.
    const std::string &given(const step_t &step) const { return *stages[step.hop]; }
    count_t changes_of_fixes() const;
    bool changes() const { return *original != *result; }
    // The rule that a script line owes its change to, or "fix"; "-" when no step is known.
    std::string rule_of(const script_line_t &line) const;
    // The same with the step of the route, when it has several: "step 2 IC-QOS-04".
    std::string told_rule_of(const script_line_t &line) const;
    std::string told_rules(const step_t &step) const;
};

// Runs the conversion. What a converter cannot do is a failure in its step. Throws run_error_t when
// the machine does not allow it, and usage_error_t when the logs cannot be kept.
converted_t run_conversion(const conversion_request_t &request);

// What may be told about the conversion; good as long as that.
const mask_t &mask_of(const converted_t &conversion);

} // namespace infraconvert
