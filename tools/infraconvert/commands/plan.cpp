// plan: which rules apply to a way from one release to another, and with configurations which way
// is the best for them.

#include "base/errors.h"
#include "base/messages.h"
#include "commands/common.h"
#include "reports/command_json.h"
#include "reports/summary.h"
#include "reports/ways_json.h"
#include "reports/ways_text.h"
#include "window/crew.h"

#include <algorithm>
#include <memory>

namespace infraconvert {

namespace {

struct plan_options_t {
    route_options_t releases;
    std::vector<std::string> services;
    bool json = false, mask = false;
    size_t jobs = 1;
    paths_t paths;
};

int show_borders(const plan_options_t &options) {
    const auto chosen = services_named(options.services);
    write_output(options.json ? borders_json(chosen) : borders_text(chosen));
    return exit_done;
}

int show_rules(const plan_options_t &options) {
    require_release("--from", options.releases.from);
    require_release("--to", options.releases.to);
    const route_t route = checked_route(options.releases);
    const auto chosen = services_named(options.services);
    write_output(options.json ? plan_json(chosen, route) : plan_table(chosen, route));
    return exit_done;
}

std::vector<traveller_result_t> try_all(const plan_options_t &options,
                                        const choices_request_t &request,
                                        const std::vector<std::string> &files) {
    std::vector<traveller_result_t> results;
    make_in_order<traveller_result_t>(
        files.size(), options.jobs, [&](size_t i) { return try_ways_of(files[i], request); },
        [&](size_t, traveller_result_t result) { results.push_back(std::move(result)); });
    return results;
}

// Where the best for all is not the best for each.
std::string but_for_some(const std::vector<traveller_result_t> &results, const choice_t &best) {
    const auto tried = static_cast<size_t>(
        std::count_if(results.begin(), results.end(),
                      [](const traveller_result_t &each) { return !each.ways.empty(); }));
    const size_t others = tried - best.best;
    return others == 0 ? "" : "; " + std::to_string(others) + " would lose less by another way";
}

void tell_best(const std::vector<traveller_result_t> &results,
               const std::vector<choice_t> &choices) {
    if (choices.empty())
        return;
    const choice_t &best = choices.front();
    const std::vector<std::string> &stops = best.stops.front();
    std::string via;
    for (const std::string &stop : stops)
        via += (via.empty() ? " --via '" : ",") + stop;
    via += via.empty() ? "" : "'";
    message("best" + std::string(results.size() > 1 ? " for all: " : ": ") + best.name() +
            but_for_some(results, best) +
            (best.failing + best.losing == 0 ? ", which loses nothing"
                                             : " (infraconvert audit" + via +
                                                   " shows what it loses, and how that is "
                                                   "mended)"));
}

int status_of(const std::vector<traveller_result_t> &results,
              const std::vector<choice_t> &choices) {
    int status = exit_done;
    for (const traveller_result_t &result : results)
        status = worse(status, result.problem_status);
    if (!choices.empty() && choices.front().failing > 0)
        status = worse(status, exit_failed);
    if (!choices.empty() && choices.front().losing > 0)
        status = worse(status, exit_findings);
    return status;
}

int show_ways(const plan_options_t &options) {
    require_release("--to", options.releases.to);
    const route_t route = checked_route(options.releases);
    const std::vector<std::string> files = files_of(options.paths);
    const bool one = files.size() == 1;
    const auto results = try_all(options,
                                 {.route = route,
                                  .services = services_named(options.services),
                                  .forgets = !one && !options.json,
                                  .mask = options.mask},
                                 files);
    const std::vector<choice_t> choices = choices_of(results);
    if (options.json)
        write_output(choices_json(route, results, choices));
    else if (one && results[0].problem.empty())
        write_output(ways_text(results[0]));
    else if (!one)
        write_output(choices_text(results, choices));
    for (const traveller_result_t &result : results) {
        if (!result.problem.empty())
            message(shown_name(result.file) + ": " + result.problem);
    }
    tell_best(results, choices);
    return status_of(results, choices);
}

int run(const plan_options_t &options) {
    const auto &[from, to, via] = options.releases;
    if (!options.paths.given.empty() || !options.paths.list.empty())
        return show_ways(options);
    return from.empty() && to.empty() && via.empty() ? show_borders(options) : show_rules(options);
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<plan_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_json(arguments, options->json);
    declare_mask(arguments, options->mask);
    declare_jobs(arguments, options->jobs);
    declare_paths(arguments, options->paths);
    return [options] { return run(*options); };
}

} // namespace

const command_t plan_command = {
    .name = "plan",
    .summary = "Tell which rules apply, and with configurations which way is the best",
    .examples = "infraconvert plan\n"
                "infraconvert plan --from '4.0(1)' --to '5.0(2)'\n"
                "infraconvert plan --from '4.1(2)' --to '5.0(3)' switch.cfg\n"
                "infraconvert plan --to '5.0(3)' configurations/\n"
                "infraconvert plan --to '5.0(3)' --via '4.1(3)K2(1),4.2(1)' switch.cfg\n",
    .declare = declare,
};

} // namespace infraconvert
