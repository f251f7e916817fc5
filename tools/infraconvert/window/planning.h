// A plan in the making: what came of each configuration, as it is agreed on.
#pragma once

#include "conversion/conversion.h"
#include "window/journal.h"
#include "window/plan.h"
#include "window/plan_folder.h"

#include <string>
#include <vector>

namespace infraconvert {

// What is to be done with a configuration whose conversion and findings are these: without its path
// and its digests.
planned_t planned_of(const converted_t &conversion, bool keep_going,
                     const std::vector<finding_t> &findings);
// The same of one that cannot be read.
planned_t planned_of_problem(const std::string &problem);

class planning_t {
  public:
    // Makes the private folder, and keeps other runs off the plan. Throws input_error_t where an
    // earlier plan of this name has converted files: their way back stands in that folder.
    explicit planning_t(const std::string &plan_file);

    // Gives `planned` the path from the plan, and the digests of the conversion; null: there is
    // none. May be called by several threads.
    void complete(planned_t &planned, const std::string &file, const converted_t *conversion) const;

    std::string key_digest() const { return folder.key_digest(); }

  private:
    plan_folder_t folder;
    const journal_t journal; // for its lock
};

} // namespace infraconvert
