#include "window/planning.h"

#include "base/errors.h"
#include "base/quoting.h"

#include <algorithm>

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

void add_agreed(std::vector<agreed_t> &agreed, const finding_t &finding) {
    const agreement_t &accepted = *finding.accepted;
    const auto known = std::find_if(agreed.begin(), agreed.end(), [&](const agreed_t &each) {
        return each.code == finding.kind->code && each.reason == accepted.reason &&
               each.until == accepted.until;
    });
    if (known != agreed.end())
        known->findings++;
    else
        agreed.push_back({finding.kind->code, accepted.reason, accepted.until, 1});
}

void add_once(std::vector<std::string> &words, const char *word) {
    if (std::find(words.begin(), words.end(), word) == words.end())
        words.emplace_back(word);
}

} // namespace

planned_t planned_of(const converted_t &conversion, bool keep_going,
                     const std::vector<finding_t> &findings) {
    planned_t planned;
    planned.route = conversion.route;
    planned.findings = count_findings(findings);
    planned.mended = conversion.mended;
    for (const finding_t &finding : findings) {
        if (finding.accepted)
            add_agreed(planned.agreed, finding);
        else if (is_open_error(finding))
            add_once(planned.refused, finding.kind->code);
    }
    for (const step_t &step : conversion.steps) {
        for (const engine::rule_t *rule : step.routing.rules)
            add_once(planned.rules, rule->id);
        if (step.failure)
            add_once(planned.failed_services, step.service->name);
    }
    planned.state = state_of(conversion, keep_going, !planned.refused.empty());
    return planned;
}

planned_t planned_of_problem(const std::string &problem) {
    planned_t planned;
    planned.state = planned_state_t::unusable;
    planned.problem = problem;
    return planned;
}

planning_t::planning_t(const std::string &plan_file) : folder(made(plan_file)), journal(folder) {
    const size_t standing = journal.before().standing();
    if (standing == 0)
        return;
    throw input_error_t(quoted_name(plan_file) + ": this plan has converted " +
                        std::to_string(standing) + (standing == 1 ? " file" : " files") +
                        ", and keeps the way back; take it with infraconvert undo --plan, or save "
                        "the new plan under another name");
}

void planning_t::complete(planned_t &planned, const std::string &file,
                          const converted_t *conversion) const {
    planned.path = folder.name_in_plan(file);
    if (!conversion)
        return;
    planned.input_digest = folder.digest(*conversion->original);
    planned.result_digest = folder.digest(*conversion->result);
}

} // namespace infraconvert
