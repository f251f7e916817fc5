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
    bool exit_code = false; // tells with it when something would change
    size_t jobs = 1;
};

// Declares "--plan" with these words.
void declare_plan(CLI::App &arguments, std::string &plan, const std::string &words);

// Each returns the exit status, and throws one of errors.h.
int look_at_plan(const window_options_t &options);
int apply_plan(const window_options_t &options);
int undo_plan(const window_options_t &options);

} // namespace infraconvert
