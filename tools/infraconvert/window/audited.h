// What came of one configuration: the record of which every report shows a part. It is data alone,
// so that it can go through JSON and come back.
#pragma once

#include "audit/findings.h"
#include "conversion/route.h"
#include "meaning/changes.h"

#include <optional>
#include <string>
#include <vector>

namespace infraconvert {

// Worst first.
enum class state_t {
    unusable,  // it could not be looked at
    failed,    // the conversion did
    changed,   // by the conversion
    unchanged, // by the conversion
    checked    // as it is: there was no conversion
};
const char *state_name(state_t state);
std::optional<state_t> state_named(std::string_view name);

// What one service did on one hop.
struct service_record_t {
    std::string name, rules; // "IC-QOS-04", or "-"
    std::string state;       // "converted", "unchanged", "no rule" or "failed"
    std::string words;       // what its rules do, why there is none, or why it failed
    size_t added = 0, removed = 0;
    std::vector<std::string> hop = {}; // its two releases, of a route with several
};

// A line of the difference between the original and the result.
struct diff_line_t {
    enum class edit_t { keep, remove, add, gap }; // gap: unchanged lines that are left out
    edit_t edit;
    size_t before = 0, after = 0; // line numbers, from 1, of where it stands or would
    std::string text = {}, rule = {};
    std::vector<std::string> hop = {}; // of a changed line, as of a service
};

// What is kept of a configuration when more than its findings is to be shown.
struct details_t {
    std::vector<service_record_t> services;
    std::vector<diff_line_t> diff;
    std::vector<meaning::changed_row_t> effects;
};

struct audited_t {
    std::string file;
    route_t route; // of this one; of a problem, as far as it is known
    state_t state = state_t::unchanged;
    std::string problem;                    // why it is unusable
    int problem_status = 0;                 // exit status that the problem asks for
    std::vector<std::string> services = {}; // that would change it, or fail
    std::vector<finding_t> findings = {};
    std::string verdict = {};                     // on the way back, when it was asked about
    std::string input_digest, result_digest = {}; // SHA-256; empty where secrets are masked
    // Equal for configurations of which the same is said, wherever the lines stand.
    std::string alike = {};
    std::optional<details_t> details = {};

    // The machine was in the way of looking at it.
    bool is_blocked() const;
    // It could not be looked at, fails, or loses something that nobody agreed to.
    bool needs_hands() const;
    // Every open error has a fix.
    bool is_mendable() const;
    // What a command exits with for it: findings of this severity or worse count.
    int exit_status(std::optional<severity_t> least = severity_t::error) const;
};

// Why something could not be looked at, with what to do where it is the machine's doing.
std::string problem_in_words(const std::string &problem, int exit_status);

// The value of `alike`.
std::string likeness_of(const audited_t &audited);

} // namespace infraconvert
