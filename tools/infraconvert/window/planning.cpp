#include "window/planning.h"

#include "base/errors.h"
#include "base/interruption.h"
#include "base/messages.h"
#include "base/outputs.h"
#include "base/quoting.h"

#include <algorithm>
#include <atomic>
#include <unistd.h>
#include <utility>

namespace infraconvert {

namespace {

// The folder of a plan that is not saved yet, where a signal finds it.
struct unsaved_t {
    std::atomic<bool> is_there = false;
    std::string key, journal, folder;
} unsaved;

// Does only what a signal's handler may.
void remove_unsaved() {
    if (!unsaved.is_there.exchange(false))
        return;
    unlink(unsaved.key.c_str());
    unlink(unsaved.journal.c_str());
    rmdir(unsaved.folder.c_str());
}

void remove_when_interrupted(const plan_folder_t &folder) {
    unsaved.key = folder.key_file();
    unsaved.journal = folder.journal();
    unsaved.folder = folder.path();
    unsaved.is_there = true;
    before_ending(remove_unsaved);
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

planned_t planned_of_problem(const std::string &problem, int status) {
    planned_t planned;
    planned.state = status == exit_trouble ? planned_state_t::blocked : planned_state_t::unusable;
    planned.problem = problem;
    return planned;
}

planning_t::planning_t(const std::string &plan_file) : folder(plan_file) {
    try {
        begin();
    } catch (...) {
        give_up();
        throw;
    }
}

planning_t::~planning_t() { give_up(); }

// Whoever has the journal may make the key, and remove both.
void planning_t::begin() {
    {
        const uninterrupted_t making;
        is_fresh = folder.make_folder();
        journal.emplace(folder);
        if (is_fresh)
            remove_when_interrupted(folder);
        folder.make();
    }
    const size_t standing = journal->before().standing();
    if (standing == 0)
        return;
    throw input_error_t(quoted_name(folder.plan()) + ": this plan has converted " +
                        counted(standing, "file") +
                        ", and keeps the way back; take it with infraconvert undo --plan, or save "
                        "the new plan under another name");
}

void planning_t::give_up() noexcept {
    if (!std::exchange(is_fresh, false))
        return;
    if (journal)
        remove_unsaved();
    else
        rmdir(folder.path().c_str()); // it is somebody else's by now, or empty
}

// Signals wait from the first byte of the plan until the folder is one that stays.
void planning_t::save(const std::function<void()> &write) {
    const uninterrupted_t saving(!may_wait_for_a_reader(folder.plan()));
    write();
    is_fresh = false;
    unsaved.is_there = false;
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
