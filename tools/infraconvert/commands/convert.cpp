// convert: the conversion that preview shows, applied. All or nothing.

#include "base/clock.h"
#include "base/errors.h"
#include "base/interruption.h"
#include "base/locked_file.h"
#include "base/messages.h"
#include "base/outputs.h"
#include "base/quoting.h"
#include "commands/backup.h"
#include "commands/common.h"
#include "commands/many.h"
#include "commands/window.h"
#include "conversion/version_line.h"
#include "reports/command_json.h"
#include "reports/conversion_findings.h"
#include "reports/mask.h"
#include "reports/summary.h"
#include "window/planning.h"

#include <algorithm>
#include <csignal>
#include <memory>

namespace infraconvert {

namespace {

constexpr const char *default_suffix = ".bak";

struct convert_options_t : job_options_t {
    std::string output;              // empty: in place
    std::string backup_suffix;       // empty: no backup
    std::string plan;                // empty: none
    std::vector<std::string> accept; // codes, and files behind "@"
    paths_t paths;
    size_t jobs = 1;
};

// What the command is to do with one configuration.
struct task_t {
    job_t job;
    std::string destination; // a file or standard_stream
    std::string backup;      // empty: none
    bool keep_going;
    bool alone;                          // there is no other configuration behind it
    std::shared_ptr<locked_file_t> lock; // of a file that is converted in place

    bool in_place() const { return destination == job.file && destination != standard_stream; }
};

std::string destination_of(const convert_options_t &options, const std::string &file) {
    if (options.output.empty())
        return file;
    std::error_code ignored;
    const bool same = options.output != standard_stream &&
                      std::filesystem::equivalent(options.output, file, ignored);
    return same ? file : options.output;
}

// Throws usage_error_t when what is asked for does not go together.
void check_combination(const convert_options_t &options, const task_t &task) {
    if (options.json && task.destination == standard_stream)
        throw usage_error_t("--json needs standard output for itself: name a file with --output");
    if (!options.backup_suffix.empty() && !task.in_place())
        throw usage_error_t("--backup goes with a conversion in place only");
}

void expect_outputs(const task_t &task) {
    if (!task.in_place() && task.destination != standard_stream)
        task.job.outputs->expect("--output", task.destination);
    if (task.backup.empty())
        return;
    task.job.outputs->expect("--backup", task.backup);
    refuse_other_backup(task.backup, *task.job.request.text);
}

task_t task_of(const convert_options_t &options) {
    task_t task;
    task.keep_going = options.keep_going;
    task.alone = options.alone;
    task.job.file = options.path;
    task.destination = destination_of(options, task.job.file);
    check_combination(options, task);
    if (task.in_place())
        task.lock = std::make_shared<locked_file_t>(task.job.file);
    task.job = read_job(options);
    if (!options.backup_suffix.empty())
        task.backup = task.job.file + options.backup_suffix;
    expect_outputs(task);
    return task;
}

// Up to the first byte of the commit others are looked out for; from then on nobody who stops
// reading the messages keeps the command from telling how it ended.
void convert_in_place(const task_t &task, const converted_t &conversion) {
    const auto commit = [&] {
        task.lock->look_again(*conversion.original);
        if (!task.backup.empty()) {
            make_backup(task.lock->descriptor(), *conversion.original, task.backup);
            task.lock->look_again(*conversion.original);
        }
        signal(SIGPIPE, SIG_IGN);
        return true;
    };
    const auto is_expected = [&](int replaced) {
        return task.lock->is(replaced, *conversion.original);
    };
    write_whole(task.job.file, *conversion.result,
                {.before_first_byte = commit, .is_expected = is_expected});
}

// Once the file is written the exit status tells so, whatever signal comes; of many, each is
// written or not, and a signal ends the work between them.
void write_file(const task_t &task, const converted_t &conversion) {
    const uninterrupted_t writing(!may_wait_for_a_reader(task.destination));
    if (task.in_place())
        convert_in_place(task, conversion);
    else
        task.job.outputs->write(task.destination, *conversion.result);
    if (task.alone)
        uninterrupted_t::committed();
}

// Writes the result where it belongs. Returns false when there was nothing to write.
bool write_result(const task_t &task, const converted_t &conversion) {
    if (task.in_place() && !conversion.changes())
        return false;
    if (task.destination == standard_stream)
        write_output(*conversion.result);
    else
        write_file(task, conversion);
    return true;
}

std::string outcome(const task_t &task, const converted_t &conversion, bool usable, bool written) {
    if (!usable)
        return "nothing is written, because a service failed (--keep-going uses what the others "
               "made of it)";
    if (!written)
        return "nothing changes; the file is untouched";
    if (task.in_place())
        return "converted" +
               (task.backup.empty() ? "" : "; the original is kept in " + quoted_name(task.backup));
    return std::string(conversion.changes() ? "converted" : "unchanged") + ", written to " +
           (task.destination == standard_stream ? "standard output"
                                                : quoted_name(task.destination));
}

std::string refusal(const std::string &codes) {
    return "nothing is written, because something would be lost; convert with --mend where there "
           "are fixes, and when the loss is all right with --accept " +
           codes;
}

int convert_alone(const convert_options_t &options) {
    exceptions_t agreed(options.accept, today());
    const task_t task = task_of(options);
    const converted_t conversion = run_job(task.job);
    const std::string name = shown_name(task.job.file);
    const converted_t shown = shown_conversion(conversion, options.mask);
    tell_summary(name, shown);
    const std::vector<finding_t> findings =
        findings_of(conversion, task.job.request, task.job.file, agreed, options.mask);
    tell_findings(name, findings);
    tell_idle(agreed);
    const std::string refused = refused_codes(findings);
    const bool usable = task.keep_going || !conversion.failed();
    const bool written = usable && refused.empty() && write_result(task, conversion);
    message(name + ": " +
            (usable && !refused.empty() ? refusal(refused)
                                        : outcome(task, conversion, usable, written)));
    if (options.json)
        try_output(convert_json(plain_name(task.job.file), {conversion, shown}, findings,
                                written ? task.destination : "", written ? task.backup : ""));
    if (conversion.failed())
        return exit_failed;
    return refused.empty() ? exit_done : exit_findings;
}

looked_at_t convert_one_of_many(const convert_options_t &options, exceptions_t &agreed,
                                const std::string &file) {
    convert_options_t own = options;
    own.path = file;
    own.alone = false;
    const task_t task = task_of(own);
    const conversion_request_t &request = task.job.request;
    const bool is_other = names_other_release(*request.text, request.route.front());
    const converted_t conversion = run_job(task.job);
    const std::vector<finding_t> findings =
        findings_of(conversion, request, file, agreed, options.mask);
    const planned_t planned = planned_of(conversion, options.keep_going, findings);
    if (planned.state != planned_state_t::ready)
        return {{file, planned, state_as_planned(planned)}, "", is_other};
    uninterrupted_t::last_call();
    write_file(task, conversion);
    const int status = conversion.failed() ? exit_failed : exit_done;
    return {{file, planned, {standing_t::converted, true, "", status}}, "", is_other};
}

// Nobody who stops reading what is told may end this in the midst of a file.
int convert_many(const convert_options_t &options, const std::vector<std::string> &files) {
    if (!options.output.empty() || options.log || !options.log_dir.empty())
        throw usage_error_t("--output, --log and --log-dir go with one configuration");
    require_release("--to", options.releases.to);
    checked_route(options.releases);
    codes_to_mend(options.mend);
    exceptions_t agreed(options.accept, today());
    message("without a plan there is no journal, no going on after an interruption and no undo" +
            std::string(options.backup_suffix.empty() ? ", and no original is kept" : "") +
            "; infraconvert preview --save-plan and convert --plan have all of these");
    signal(SIGPIPE, SIG_IGN);
    const window_report_t report = with_each(
        {window_verb_t::convert, "", options.mend}, files, options.jobs,
        [&](const std::string &file) { return convert_one_of_many(options, agreed, file); },
        [](const std::string &) {});
    try_output(options.json ? window_json(report) : window_text(report));
    tell_idle(agreed);
    return report.exit_status();
}

// The plan was agreed on with all of its options, and keeps the originals itself.
int convert_as_planned(const convert_options_t &options) {
    const bool chooses = !options.releases.from.empty() || !options.releases.to.empty() ||
                         !options.releases.via.empty() || !options.services.empty() ||
                         options.keep_going || !options.mend.empty() || !options.accept.empty();
    if (chooses)
        throw usage_error_t(
            "--plan brings --from, --to, --via, --service, --keep-going, --mend and "
            "--accept with it");
    if (!options.output.empty() || !options.backup_suffix.empty() || options.log ||
        !options.log_dir.empty())
        throw usage_error_t("--plan converts in place and keeps the originals for infraconvert "
                            "undo; it goes without --output, --backup, --log and --log-dir");
    return apply_plan(
        {options.plan, paths_as_given(options.paths), options.json, false, options.jobs});
}

int run(convert_options_t options) {
    if (!options.plan.empty())
        return convert_as_planned(options);
    const std::vector<std::string> files = files_of(options.paths);
    if (files.size() > 1 && std::find(files.begin(), files.end(), standard_stream) != files.end())
        throw usage_error_t("standard input goes alone");
    if (files.size() > 1)
        return convert_many(options, files);
    options.path = files[0];
    return convert_alone(options);
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<convert_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_keep_going(arguments, options->keep_going);
    arguments
        .add_option("-o,--output", options->output,
                    "Write the result to this file, or - for standard output, instead of PATH")
        ->type_name("FILE")
        ->check(not_empty);
    arguments
        .add_flag(std::string("--backup{") + default_suffix + "}", options->backup_suffix,
                  "Keep the original beside the file, with this suffix [.bak]")
        ->type_name("=SUFFIX");
    declare_plan(arguments, options->plan,
                 "Convert as agreed on in this plan, all of it or these PATHs; without a plan "
                 "there is no journal, no going on and no undo");
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

const command_t convert_command = {
    .name = "convert",
    .summary = "Convert configurations, in place or to another file",
    .examples = "infraconvert convert --from '4.0(1)' --to '4.1(3)' --backup switch.cfg\n"
                "infraconvert convert --from '4.0(1)' --to '4.1(3)' --output new.cfg switch.cfg\n"
                "infraconvert convert --from '4.0(1)' --to '4.1(3)' - < switch.cfg > new.cfg\n"
                "infraconvert convert --plan window.json\n",
    .declare = declare,
};

} // namespace infraconvert
