// What the commands do with a plan: look where it stands, apply it, take it back.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace infraconvert {

struct window_options_t {
    std::string plan;
    std::vector<std::string> paths; // only these of its configurations; empty: all
    bool json = false;
    size_t jobs = 1;
};

// Each returns the exit status, and throws one of errors.h.
int look_at_plan(const window_options_t &options);
int apply_plan(const window_options_t &options);
int undo_plan(const window_options_t &options);

} // namespace infraconvert
