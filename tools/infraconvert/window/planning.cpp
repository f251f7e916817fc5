#include "window/planning.h"

#include "base/errors.h"
#include "base/quoting.h"

#include <map>

namespace infraconvert {

namespace {

plan_folder_t made(const std::string &plan_file) {
    plan_folder_t folder(plan_file);
    folder.make();
    return folder;
}

planned_state_t state_of(const converted_t &conversion, bool keep_going, bool refused) {
    if (conversion.failed() && !keep_going)
        return planned_state_t::failed;
    if (refused)
        return planned_state_t::refused;
    return conversion.changes() ? planned_state_t::ready : planned_state_t::unchanged;
}

} // namespace

planning_t::planning_t(const std::string &plan_file) : folder(made(plan_file)), journal(folder) {
    const size_t standing = journal.before().standing();
    if (standing == 0)
        return;
    throw input_error_t(quoted_name(plan_file) + ": this plan has converted " +
                      std::to_string(standing) + (standing == 1 ? " file" : " files") +
                      ", and no other may take the place of their way back; take it back with "
                      "infraconvert undo --plan, or save the new plan under another name");
}

planned_t planning_t::planned(const std::string &file, const converted_t &conversion,
                              bool keep_going, const std::vector<finding_t> &findings,
                              const std::vector<std::string> &refused) const {
    planned_t planned = {.path = folder.name_in_plan(file),
                         .state = state_of(conversion, keep_going, !refused.empty()),
                         .problem = {},
                         .route = {conversion.releases.from, conversion.releases.to},
                         .rules = {},
                         .failed_services = {},
                         .findings = count_findings(findings),
                         .agreed = {},
                         .refused = refused,
                         .mended = conversion.mended,
                         .input_digest = folder.digest(*conversion.original),
                         .result_digest = folder.digest(*conversion.result)};
    for (const step_t &step : conversion.steps) {
        for (const engine::rule_t *rule : step.routing.rules)
            planned.rules.emplace_back(rule->id);
        if (step.failure)
            planned.failed_services.emplace_back(step.service->name);
    }
    return planned;
}

planned_t planning_t::unusable(const std::string &file, const std::string &problem) const {
    planned_t planned;
    planned.path = folder.name_in_plan(file);
    planned.state = planned_state_t::unusable;
    planned.problem = problem;
    return planned;
}

} // namespace infraconvert
