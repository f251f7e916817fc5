// A plan in the making: what came of each configuration, as it is agreed on.
#pragma once

#include "conversion/conversion.h"
#include "window/journal.h"
#include "window/plan.h"
#include "window/plan_folder.h"

#include <string>
#include <vector>

namespace infraconvert {

class planning_t {
  public:
    // Makes the private folder, and keeps other runs off the plan. Throws input_error_t where an
    // earlier plan of this name has converted files: their way back stands in that folder.
    explicit planning_t(const std::string &plan_file);

    // What is planned for a configuration: `refused` are the codes of errors that were not agreed
    // on. May be called by several threads.
    planned_t planned(const std::string &file, const converted_t &conversion, bool keep_going,
                      const std::vector<finding_t> &findings,
                      const std::vector<std::string> &refused) const;
    planned_t unusable(const std::string &file, const std::string &problem) const;

  private:
    plan_folder_t folder;
    const journal_t journal; // for its lock
};

} // namespace infraconvert
