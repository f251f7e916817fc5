// preview: what a conversion would change, as a diff, without changing anything.

#include "audit/fixes.h"
#include "audit/masked_findings.h"
#include "base/clock.h"
#include "base/errors.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "commands/common.h"
#include "commands/many.h"
#include "commands/saving.h"
#include "commands/window.h"
#include "conversion/version_line.h"
#include "reports/command_json.h"
#include "reports/conversion_findings.h"
#include "reports/mask.h"
#include "reports/summary.h"
#include "reports/unified.h"
#include "window/planning.h"

#include <algorithm>
#include <memory>

namespace infraconvert {

namespace {

struct preview_options_t : job_options_t {
    std::string color = "auto";
    size_t context = 3;
    std::vector<std::string> labels; // of the original, of the result
    bool explain = false;
    bool words = false;
    bool rollback = false;
    bool exit_code = false;
    bool details = false;            // of each, where there are many
    std::string save_plan;           // empty: nowhere
    std::string plan;                // that is looked at in place of files; empty: none
    std::vector<std::string> accept; // codes, and files behind "@"
    paths_t paths;
    size_t jobs = 1;
};

// The name in the head of the diff. The state stands behind a tab, where patch expects a time and
// does not take it for a part of the file's name.
std::string label(const preview_options_t &options, size_t number, const std::string &file,
                  const std::string &state) {
    return number < options.labels.size() ? options.labels[number]
                                          : quoted_name(file) + '\t' + state;
}

struct view_t {
    const converted_t &conversion; // whose steps changed the lines
    const std::string &file;
    std::string after_state; // in the head of the diff
};

std::string diff_of(const preview_options_t &options, const view_t &view, bool may_color) {
    const converted_t &c = view.conversion;
    unified_t format = {.before_label = label(options, 0, view.file, c.route.front()),
                        .after_label = label(options, 1, view.file, view.after_state),
                        .context = options.context,
                        .color = may_color && wants_color(options.color),
                        .visible = may_color && is_terminal(),
                        .words = may_color && options.words,
                        .annotation = {},
                        .margin = 0};
    if (options.explain && may_color) {
        format.annotation = [&](const script_line_t &line) { return c.told_rule_of(line); };
        for (const step_t &step : c.steps)
            format.margin = std::max(format.margin, c.told_rules(step).size());
    }
    return unified_diff(split_lines(*c.original), split_lines(*c.result), c.script, format);
}

// The rules that stand in the margin.
std::string legend(const converted_t &conversion) {
    std::string text;
    for (const step_t &step : conversion.steps) {
        const std::string ids = conversion.told_rules(step) + "  ";
        if (step.changes())
            text += ids +
                    wrapped(std::string(step.service->title) + ": " + step.routing.words(),
                            ids.size()) +
                    '\n';
    }
    return text.empty() ? "" : '\n' + text;
}

void tell_outcome(const std::string &name, const converted_t &c, bool keep_going) {
    if (c.failed() && !keep_going)
        message(name + ": nothing would be written, because a service fails (--keep-going uses "
                       "what the others make of it)");
    else if (!c.changes())
        message(name + ": nothing changes");
}

int status_of(const preview_options_t &options, bool failed, bool changes) {
    if (failed)
        return exit_failed;
    return options.exit_code && changes ? exit_would_change : exit_done;
}

int preview(const preview_options_t &options, const job_t &job) {
    exceptions_t agreed(options.accept, today());
    saving_t saving(options.save_plan, options, *job.outputs);
    const converted_t conversion = run_job(job);
    const converted_t shown = shown_conversion(conversion, options.mask);
    const std::vector<finding_t> findings =
        findings_of(conversion, job.request, job.file, agreed, options.mask);
    const std::string name = shown_name(job.file);
    const view_t view = {shown, job.file, conversion.route.back()};
    if (options.json)
        write_output(preview_json({plain_name(job.file),
                                   diff_of(options, view, false),
                                   {conversion, shown},
                                   findings,
                                   {}}));
    else
        write_output(diff_of(options, view, true) + (options.explain ? legend(conversion) : ""));
    tell_summary(name, shown);
    tell_findings(name, findings);
    tell_idle(agreed);
    tell_outcome(name, conversion, options.keep_going);
    planned_t planned = planned_of(conversion, options.keep_going, findings);
    saving.complete(planned, job.file, &conversion);
    saving.save({planned});
    return status_of(options, conversion.failed(), conversion.changes());
}

// There and back: the difference between the original and what comes back.
converted_t round_trip(const converted_t &forward, const converted_t &back) {
    converted_t both = forward;
    both.result = back.result;
    both.script = difference(split_lines(*both.original), split_lines(*both.result));
    return both;
}

std::string verdict_in_words(const converted_t &both, const judged_result_t &way) {
    if (!both.changes())
        return "reversible: a rollback gives back every byte";
    const std::string reversible = way.verdict();
    return reversible + (way.loses() ? ": the diff shows what a rollback leaves different"
                                     : ": a rollback gives back every effect; the diff shows what "
                                       "it leaves different");
}

// What the way there and back leaves different.
int show_way_back(const preview_options_t &options, const job_t &job, exceptions_t &agreed,
                  const json_conversion_t &forward, const json_conversion_t &back) {
    const route_t &there = job.request.route;
    const std::string name = shown_name(job.file);
    const converted_t exact = round_trip(forward.exact, back.exact);
    const converted_t both = shown_conversion(exact, options.mask);
    const view_t view = {both, job.file, there.front() + ", after " + there.back() + " and back"};
    const bool usable = !back.exact.failed() || options.keep_going;
    const std::string diff = usable ? diff_of(options, view, !options.json) : "";
    judged_result_t way;
    if (usable)
        way = judge_with_fixes(*exact.original, *exact.result, there_and_back(there));
    agreed.mark(job.file, way.findings);
    const std::string verdict = usable ? way.verdict() : back_fails;
    if (options.mask)
        mask_findings(way.findings, exact);
    write_output(options.json ? preview_json({plain_name(job.file), diff, forward, way.findings,
                                              back, verdict})
                              : diff);
    if (usable && exact.changes())
        tell_findings(name + ", there and back", way.findings);
    message(name + ": " + (usable ? verdict_in_words(exact, way) : "cannot be converted back"));
    return status_of(options, forward.exact.failed() || back.exact.failed(), exact.changes());
}

// The conversion of what came out, with the same options.
converted_t converted_back(job_t job, const converted_t &forward) {
    job.request.text = forward.result;
    job.request.route = way_back(job.request.route);
    job.mends = false;
    return run_job(job);
}

int rollback(const preview_options_t &options, job_t job) {
    exceptions_t agreed(options.accept, today());
    const std::string logs = job.request.log_directory;
    job.request.log_directory = logs.empty() ? "" : logs + "/forward";
    const converted_t forward = run_job(job);
    const std::string name = shown_name(job.file);
    const converted_t forward_shown = shown_conversion(forward, options.mask);
    tell_summary(name, forward_shown);
    if (forward.failed() && !options.keep_going) {
        tell_outcome(name, forward, false);
        write_output(
            options.json
                ? preview_json({plain_name(job.file), "", {forward, forward_shown}, {}, {}})
                : "");
        return exit_failed;
    }
    job.request.log_directory = logs.empty() ? "" : logs + "/back";
    const converted_t back = converted_back(job, forward);
    const converted_t back_shown = shown_conversion(back, options.mask);
    tell_summary(name + ", back again", back_shown);
    return show_way_back(options, job, agreed, {forward, forward_shown}, {back, back_shown});
}

looked_at_t preview_one_of_many(const preview_options_t &options, const saving_t &saving,
                                exceptions_t &agreed, const std::string &file) {
    preview_options_t own = options;
    own.path = file;
    own.alone = false;
    const job_t job = read_job(own);
    const bool is_other = names_other_release(*job.request.text, job.request.route.front());
    const converted_t conversion = run_job(job);
    const std::vector<finding_t> findings =
        findings_of(conversion, job.request, job.file, agreed, options.mask);
    planned_t planned = planned_of(conversion, options.keep_going, findings);
    saving.complete(planned, file, &conversion);
    std::string details;
    if (options.details) {
        const converted_t shown = shown_conversion(conversion, options.mask);
        details = diff_of(options, {shown, file, conversion.route.back()}, true);
    }
    return {{file, planned, state_as_planned(planned)}, details, is_other};
}

void refuse_options_for_one(const preview_options_t &options) {
    const char *first = !options.labels.empty()                   ? "--label"
                        : options.rollback                        ? "--rollback"
                        : options.log || !options.log_dir.empty() ? "--log and --log-dir"
                        : options.explain && !options.details     ? "--explain, without --details,"
                        : options.json && options.details         ? "--json with --details"
                                                                  : nullptr;
    if (first)
        throw usage_error_t(std::string(first) + " goes with one configuration");
}

int preview_many(const preview_options_t &options, const std::vector<std::string> &files) {
    refuse_options_for_one(options);
    require_release("--to", options.releases.to);
    checked_route(options.releases);
    codes_to_mend(options.mend);
    exceptions_t agreed(options.accept, today());
    outputs_t outputs;
    for (const std::string &file : files)
        outputs.made_from(file);
    saving_t saving(options.save_plan, options, outputs);
    window_report_t report = with_each(
        {window_verb_t::preview, "", options.mend}, files, options.jobs,
        [&](const std::string &file) { return preview_one_of_many(options, saving, agreed, file); },
        [](const std::string &details) { write_output(details); });
    std::vector<planned_t> planned;
    for (const auto &line : report.lines) {
        planned.push_back(line.planned);
        if (line.planned.input_digest.empty())
            saving.complete(planned.back(), line.file, nullptr);
    }
    if (options.json)
        write_output(window_json(report));
    else if (options.details)
        message_lines(window_text(report));
    else
        write_output(window_text(report));
    tell_idle(agreed);
    saving.save(std::move(planned));
    return report.exit_status(options.exit_code);
}

int look_at_plan(const preview_options_t &options) {
    const bool chooses = !options.releases.from.empty() || !options.releases.to.empty() ||
                         !options.releases.via.empty() || !options.services.empty() ||
                         options.keep_going || !options.mend.empty() || !options.accept.empty() ||
                         !options.save_plan.empty() || options.rollback || options.explain ||
                         options.details;
    if (chooses)
        throw usage_error_t("--plan tells where a plan stands, which was made with options of its "
                            "own; it goes with --json, --exit-code, --jobs and PATHs only");
    return look_at_plan(window_options_t{options.plan, paths_as_given(options.paths), options.json,
                                         options.exit_code, options.jobs});
}

int run(preview_options_t options) {
    if (options.labels.size() > 2)
        throw usage_error_t("--label may be given twice at most");
    for (const std::string &name : options.labels) {
        if (name.find_first_of("\n\r") != name.npos)
            throw usage_error_t("--label: a name of one line is needed");
    }
    if (options.rollback && (options.explain || !options.save_plan.empty()))
        throw usage_error_t("--rollback goes neither with --explain nor with --save-plan");
    if (options.words && options.explain)
        throw usage_error_t(
            "--word-diff does not go with --explain: lines have rules, words have none");
    if (!options.plan.empty())
        return look_at_plan(options);
    const std::vector<std::string> files = files_of(options.paths);
    const bool is_standard = std::find(files.begin(), files.end(), standard_stream) != files.end();
    if (is_standard && (files.size() > 1 || !options.save_plan.empty()))
        throw usage_error_t(
            "standard input goes alone, and without --save-plan: a plan names files");
    if (files.size() > 1)
        return preview_many(options, files);
    options.path = files[0];
    const job_t job = read_job(options);
    return options.rollback ? rollback(options, job) : preview(options, job);
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<preview_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_keep_going(arguments, options->keep_going);
    arguments
        .add_option("-U,--unified", options->context, "Unchanged lines around each change [3]")
        ->type_name("N");
    arguments
        .add_option("--label", options->labels,
                    "Names in the diff: of the original, then of the result")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    arguments
        .add_option("--color", options->color, "Colours: auto (on a terminal), always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
    arguments.add_flag("--word-diff", options->words, "Show what changes within lines");
    arguments.add_flag("--explain", options->explain,
                       "Name the rule behind each changed line in a margin");
    arguments.add_flag("--rollback", options->rollback,
                       "Convert there and back again, and show what differs then");
    arguments.add_flag("--details", options->details,
                       "The differences of each, where there are many");
    arguments.add_flag("--exit-code", options->exit_code,
                       "Exit with 3 when something would change");
    arguments
        .add_option("--save-plan", options->save_plan, "Save this, for infraconvert convert --plan")
        ->type_name("FILE")
        ->check(not_empty);
    declare_plan(arguments, options->plan, "Tell where this plan stands; changes nothing");
    declare_accept(arguments, options->accept);
    declare_mend(arguments, options->mend);
    declare_mask(arguments, options->mask);
    declare_json(arguments, options->json);
    declare_logs(arguments, options->log, options->log_dir);
    declare_jobs(arguments, options->jobs);
    declare_paths(arguments, options->paths);
    return [options] { return run(*options); };
}

} // namespace

const command_t preview_command = {
    .name = "preview",
    .summary = "Show what a conversion would change, as a unified diff",
    .examples = "infraconvert preview --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
                "infraconvert preview --from '4.0(1)' --to '4.1(3)' --explain switch.cfg\n"
                "infraconvert preview --from '4.0(1)' --to '4.1(3)' --rollback switch.cfg\n"
                "infraconvert preview --from '4.0(1)' --to '4.1(3)' --save-plan w.json site/\n"
                "infraconvert preview --plan w.json\n",
    .declare = declare,
};

} // namespace infraconvert
