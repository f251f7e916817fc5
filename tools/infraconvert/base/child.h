// Programs run as child processes, and what happens when the user interrupts.
#pragma once

#include <string>
#include <vector>

namespace infraconvert {

// Thrown at the next occasion after an interrupting signal, so that what was begun is cleaned up.
struct interrupted {
    int signal;
};

// From now on SIGINT, SIGTERM and SIGHUP become an `interrupted` in run_child.
void catch_interruptions();

// Runs the program to its end, with no standard input and with its output in these files. Returns
// an empty text when it exits with 0, else what became of it: "was killed by signal 11
// (Segmentation fault)", "exited with status 2". An interruption kills the child and is thrown.
std::string run_child(const std::vector<std::string> &command, const std::string &output_file,
                      const std::string &error_file);

} // namespace infraconvert
