// The start sequence of a converter: log, releases, load, routing, save.
#pragma once

#include "engine/engine.h"

#include <new>
#include <span>

namespace engine {

// One line of a converter's routing: when it applies and what then runs.
struct rule_t {
    const char *id;          // stable, for those who refer to the rule
    const char *plain_words; // what it does, for a network engineer
    bool (*applies)();       // asks the predicates about the current pair of releases
    syserr_t (*pipeline)();  // rewrites the text; 0 or -1
};

// A converter, as it describes itself.
struct conversion_t {
    engine_t &engine;
    const char *start_function;
    const char *invoked; // first message
    bool (*same_release)();
    const char *same_release_message;
    const char *routing_function;       // by which the log knows the routing
    void (*before_routing)() = nullptr; // may be null
    std::span<const rule_t> rules;
};

// Runs the pipelines of all rules that apply. Returns the status of the last one, 0 without one;
// the conditions of a converter exclude one another, so that no failure is lost.
syserr_t run_rules(std::span<const rule_t> rules);

// The routing of a converter: its rules, for the current text and pair of releases. Returns 0 or
// -1.
syserr_t route(const conversion_t &conversion);

// What the installer asks for.
struct request_t {
    const char *path, *pkg_name, *to_pkg_version, *from_pkg_version;
};

// Runs one conversion of the configuration below the requested path. Returns 0 when it was saved or
// nothing applies, -1 otherwise.
syserr_t convert(const conversion_t &conversion, const request_t &request);

// Saves the converted text of `path`, unless an insertion was refused. Returns 0 or -1.
syserr_t save_converted(engine_t &e, const char *path);

// Runs `conversion`. Running out of memory is a failure like any other.
template<class Conversion> syserr_t guarded(Conversion conversion) try {
    return conversion();
} catch (const std::bad_alloc &) {
    return failure;
}

} // namespace engine
