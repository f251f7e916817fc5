// A pipeline is a table of passes that run one after another.
#pragma once

#include "platform/platform.h"

#include <span>

// One step of a pipeline. Where it fails, the pipeline logs `message`, if there is one, followed by
// the status in words where `names_status` is set.
struct qoscnv_step_t {
    syserr_t (*run)();
    const char *message = nullptr;
    bool names_status = false;
};

// Runs the steps of the pipeline `pipeline` until one fails. Returns its status, else 0.
syserr_t qoscnv_run_steps(const char *pipeline, std::span<const qoscnv_step_t> steps);
