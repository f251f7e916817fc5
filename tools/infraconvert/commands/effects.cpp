// effects: what QoS does on the switch, and what a conversion makes of it.

#include "base/clock.h"
#include "base/errors.h"
#include "base/messages.h"
#include "commands/common.h"
#include "commands/progress.h"
#include "conversion/version_line.h"
#include "reports/details.h"
#include "reports/effects_writers.h"
#include "reports/mask.h"
#include "reports/summary.h"
#include "window/crew.h"

#include <memory>

namespace infraconvert {

namespace {

struct effects_options_t {
    route_options_t releases;
    std::vector<std::string> services;
    bool keep_going = false, mask = false;
    std::string format = "text";
    size_t jobs = 1;
    paths_t paths;
};

// What is asked for of each configuration.
struct question_t {
    conversion_request_t request; // its text is each file's in turn
    bool mask;
    bool alone; // the only one: what there is to tell besides is told at once

    bool converts() const { return hops_of(request.route) > 0; }
};

std::string failure_of(const converted_t &conversion) {
    for (const step_t &step : conversion.steps) {
        if (step.failure)
            return std::string(step.service->name) + ": " + step.failure->reason;
    }
    return "";
}

effects_record_t look_at(const question_t &question, const std::string &file) {
    effects_record_t record = {.name = shown_name(file), .route = question.request.route};
    conversion_request_t request = question.request;
    request.text = read_configuration(file);
    request.route = record.route =
        question.alone ? told_route_for(record.name, *request.text, question.request.route)
                       : route_for(*request.text, question.request.route);
    if (question.alone)
        compare_with_version_line(*request.text, request.route.front());
    const converted_t conversion =
        question.converts()
            ? run_conversion(request)
            : converted_t{.route = request.route, .original = request.text, .result = request.text};
    record.rows = effects_of(conversion, request.keep_going, question.mask);
    if (!conversion.failed())
        return record;
    const converted_t shown = shown_conversion(conversion, question.mask);
    if (question.alone)
        tell_summary(record.name, shown);
    record.failure = failure_of(shown);
    record.before = !request.keep_going;
    record.status = exit_failed;
    return record;
}

// What cannot be looked at is a record like another.
effects_record_t record_of(const question_t &question, const std::string &file) {
    effects_record_t record = {.name = shown_name(file), .route = question.request.route};
    try {
        return look_at(question, file);
    } catch (const command_error_t &e) {
        record.problem = problem_in_words(e.what(), e.exit_status);
        record.status = e.exit_status;
    } catch (const std::exception &e) {
        record.problem = problem_in_words(e.what(), exit_trouble);
        record.status = exit_trouble;
    }
    return record;
}

question_t question_of(const effects_options_t &options) {
    question_t question = {.request = {}, .mask = options.mask, .alone = false};
    question.request.route = checked_route(options.releases);
    question.request.services = services_named(options.services);
    question.request.keep_going = options.keep_going;
    if (!question.converts() && (!options.services.empty() || options.keep_going))
        throw usage_error_t(std::string(options.keep_going ? "--keep-going" : "--service") +
                            " goes with a conversion only, and --to is missing");
    return question;
}

int run(const effects_options_t &options) {
    question_t question = question_of(options);
    const std::vector<std::string> files = files_of(options.paths);
    question.alone = files.size() == 1;
    for (const std::string &file : files)
        outputs_t::only_reads(file);
    progress_t progress(files.size());
    const auto writer = effects_writer(options.format, [&](std::string_view text) {
        progress.clear();
        write_output(text);
    });
    int status = exit_done;
    writer->begin({.tool_version = INFRACONVERT_VERSION,
                   .date = now(),
                   .route = question.request.route,
                   .masked = options.mask,
                   .count = files.size()});
    make_in_order<effects_record_t>(
        files.size(), options.jobs,
        [&](size_t number) {
            return question.alone ? look_at(question, files[number])
                                  : record_of(question, files[number]);
        },
        [&](size_t, const effects_record_t &record) {
            writer->add(record);
            status = worse(status, record.status);
            progress.step();
        });
    writer->end();
    return status;
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<effects_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_keep_going(arguments, options->keep_going);
    declare_mask(arguments, options->mask);
    arguments.add_option("--format", options->format, "The rows as text, json or jsonl [text]")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json", "jsonl"}).description(""));
    declare_json(arguments, options->format);
    declare_jobs(arguments, options->jobs);
    declare_paths(arguments, options->paths);
    return [options] { return run(*options); };
}

} // namespace

const command_t effects_command = {
    .name = "effects",
    .summary = "Show what QoS does on the switch, and with --to what becomes of it",
    .examples = "infraconvert effects --from '4.0(1)' switch.cfg\n"
                "infraconvert effects --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
                "infraconvert effects --from '4.0(1)' --format jsonl configurations/\n",
    .declare = declare,
};

} // namespace infraconvert
