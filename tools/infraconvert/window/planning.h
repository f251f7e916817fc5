// A plan in the making: what came of each configuration, as it is agreed on.
#pragma once

#include "conversion/conversion.h"
#include "window/journal.h"
#include "window/plan.h"
#include "window/plan_folder.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace infraconvert {

// What is to be done with a configuration whose conversion and findings are these: without its path
// and its digests.
planned_t planned_of(const converted_t &conversion, bool keep_going,
                     const std::vector<finding_t> &findings);
// The same of one that could not be looked at, which asks for this exit status.
planned_t planned_of_problem(const std::string &problem, int status);

class planning_t {
  public:
    // Makes the private folder, and keeps other runs off the plan. Throws input_error_t where an
    // earlier plan of this name has converted files: their way back stands in that folder.
    explicit planning_t(const std::string &plan_file);
    planning_t(const planning_t &) = delete;
    planning_t &operator=(const planning_t &) = delete;
    // Removes the private folder, if it was made here and no plan was saved. So does a signal.
    ~planning_t();

    // Gives `planned` the path from the plan, and the digests of the conversion; null: there is
    // none. May be called by several threads.
    void complete(planned_t &planned, const std::string &file, const converted_t *conversion) const;

    std::string key_digest() const { return folder.key_digest(); }

    // Calls `write`, which writes the plan; the folder stays when it does not throw.
    void save(const std::function<void()> &write);

  private:
    void begin();
    void give_up() noexcept;

    plan_folder_t folder;
    bool is_fresh = false;            // the folder was made here, and there is no plan yet
    std::optional<journal_t> journal; // for its lock
};

} // namespace infraconvert
