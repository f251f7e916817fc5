// preview --save-plan: the plan in the making, and the file that it is written to.
#pragma once

#include "base/outputs.h"
#include "commands/common.h"
#include "window/plan.h"
#include "window/planning.h"

#include <optional>
#include <string>
#include <vector>

namespace infraconvert {

// A plan that is to be saved, and kept off others until then. Without a file nothing is saved.
class saving_t {
  public:
    saving_t(std::string save_plan, const job_options_t &options, outputs_t &files);

    // Gives `planned` what the plan tells of a conversion; null: there is none.
    void complete(planned_t &planned, const std::string &file, const converted_t *conversion) const;

    void save(std::vector<planned_t> configurations);

  private:
    const std::string plan_file;
    outputs_t &outputs;
    std::optional<planning_t> planning;
    plan_t plan;
};

} // namespace infraconvert
