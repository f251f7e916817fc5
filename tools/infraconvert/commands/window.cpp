#include "commands/window.h"

#include "audit/fixes.h"
#include "base/errors.h"
#include "base/interruption.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "commands/common.h"
#include "commands/progress.h"
#include "reports/window_report.h"
#include "window/apply.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace infraconvert {

namespace {

// The conversion as it was made for the plan.
std::string result_of(const plan_t &plan, const planned_t &planned, const std::string &text) {
    conversion_request_t request;
    request.text = std::make_shared<const std::string>(text);
    request.route = planned.route;
    request.services = services_named(plan.services);
    request.keep_going = plan.keep_going;
    converted_t conversion = run_conversion(request);
    if (planned.mended)
        conversion =
            with_fixes(request, mend_conversion(conversion, request, codes_to_mend(plan.mend)));
    return *conversion.result;
}

bool is_below(const std::string &path, const std::string &chosen) {
    return path == chosen || chosen == "." || path.starts_with(chosen + '/');
}

// Of a plan those configurations that the paths name, files and folders.
void choose(plan_t &plan, const plan_folder_t &folder, const std::vector<std::string> &paths) {
    std::vector<std::string> chosen;
    for (const std::string &path : paths) {
        chosen.push_back(folder.name_in_plan(path));
        if (std::none_of(plan.configurations.begin(), plan.configurations.end(),
                         [&](const planned_t &p) { return is_below(p.path, chosen.back()); }))
            throw usage_error_t(quoted_name(path) + ": the plan has no such configuration");
    }
    if (paths.empty())
        return;
    std::erase_if(plan.configurations, [&](const planned_t &planned) {
        return std::none_of(chosen.begin(), chosen.end(),
                            [&](const std::string &one) { return is_below(planned.path, one); });
    });
}

// An earlier version's plan has no folder, and says so better than its absence.
plan_folder_t opened_folder(const std::string &plan_file) {
    std::error_code ignored;
    plan_folder_t folder(plan_file);
    if (!std::filesystem::exists(plan_file + ".private", ignored))
        read_plan(plan_file);
    folder.open();
    return folder;
}

// The plan is read once nobody else can be at work with it.
int work(window_verb_t verb, const window_options_t &options) {
    const plan_folder_t folder = opened_folder(options.plan);
    std::optional<journal_t> journal;
    if (verb != window_verb_t::preview)
        journal.emplace(folder);
    plan_t plan = read_plan(options.plan);
    if (plan.key_digest != folder.key_digest())
        throw input_error_t(quoted_name(options.plan + ".private/key") +
                            ": not the key that the plan was made with; put that one back, or make "
                            "the plan anew with infraconvert preview --save-plan");
    choose(plan, folder, options.paths);

    window_report_t report = {verb, options.plan, plan.mend};
    progress_t progress(plan.configurations.size());
    const window_t window = {
        .folder = folder,
        .plan = plan,
        .convert = [&](const planned_t &planned,
                       const std::string &text) { return result_of(plan, planned, text); },
        .jobs = options.jobs,
        .tell =
            [&](size_t index, const standing_state_t &state) {
                const planned_t &planned = plan.configurations[index];
                report.lines.push_back({folder.file(planned.path), planned, state});
                progress.step();
            }};
    if (verb != window_verb_t::preview)
        say_when_ending(
            "\ninfraconvert: interrupted; each file is whole, and the same command goes "
            "on\n");
    if (verb == window_verb_t::preview)
        look_at(window);
    else if (verb == window_verb_t::convert)
        apply(window, *journal);
    else
        undo(window, *journal);
    progress.clear();
    try_output(options.json ? window_json(report) : window_text(report));
    return report.exit_status(options.exit_code);
}

} // namespace

void declare_plan(CLI::App &arguments, std::string &plan, const std::string &words) {
    arguments.add_option("--plan", plan, words)->type_name("FILE")->check(not_empty);
}

int look_at_plan(const window_options_t &options) { return work(window_verb_t::preview, options); }
int apply_plan(const window_options_t &options) { return work(window_verb_t::convert, options); }
int undo_plan(const window_options_t &options) { return work(window_verb_t::undo, options); }

} // namespace infraconvert
