// effects: what QoS does on the switch, and what a conversion makes of it.

#include "commands/effects.h"

#include "base/errors.h"
#include "base/messages.h"
#include "commands/common.h"
#include "reports/effects_report.h"
#include "reports/mask.h"
#include "reports/summary.h"

#include <memory>

namespace infraconvert {

namespace {

void mask_rows(effects_t &rows, const mask_t &mask) {
    for (auto &[row, change] : rows) {
        for (std::string *words : {&row.place, &row.traffic, &row.effect})
            *words = mask.message(*words);
    }
}

// The rows as they may be shown.
effects_t shown_rows(effects_t rows, const converted_t &conversion, bool mask) {
    if (mask)
        mask_rows(rows, mask_of(conversion));
    return rows;
}

void show(const job_options_t &options, const std::string &name, const converted_t &conversion,
          const effects_t &rows) {
    const bool failed = conversion.failed();
    if (options.json)
        return write_output(effects_json(name, conversion.route, failed, rows));
    write_output(effects_text(rows));
    if (rows.empty())
        message(name + ": no effects: no policy-map with actions is attached");
}

int show_as_it_is(const job_options_t &options) {
    const route_t wanted = checked_route(options.releases);
    if (options.path.empty())
        throw usage_error_t("missing PATH of the configuration");
    if (!options.services.empty() || options.keep_going)
        throw usage_error_t(std::string(options.keep_going ? "--keep-going" : "--service") +
                            " goes with a conversion only, and --to is missing");
    const std::string file = configuration_file(options.path);
    outputs_t().made_from(file); // standard output may go elsewhere only
    const shared_text_t text = read_configuration(file);
    const route_t route = told_route_for(shown_name(file), *text, wanted);
    compare_with_version_line(*text, route.front());
    const converted_t alone = {.route = route, .original = text, .result = text};
    show(options, shown_name(file), alone,
         shown_rows(meaning::rows_of(*text, route.front()), alone, options.mask));
    return exit_done;
}

int show_change(const job_options_t &options) {
    const job_t job = read_job(options);
    const converted_t conversion = run_job(job);
    const std::string name = shown_name(job.file);
    const std::vector<std::string_view> route(conversion.route.begin(), conversion.route.end());
    // Of a conversion that failed there is nothing to show but the original.
    const bool compares = !conversion.failed() || options.keep_going;
    effects_t rows = compares
                         ? meaning::changed_rows(*conversion.original, *conversion.result, route)
                         : meaning::rows_of(*conversion.original, conversion.route.front());
    show(options, name, conversion, shown_rows(std::move(rows), conversion, options.mask));
    if (conversion.failed()) {
        tell_summary(name, shown_conversion(conversion, options.mask));
        if (!compares)
            message(name + ": these are the effects before the conversion, which fails");
        return exit_failed;
    }
    return exit_done;
}

int run(const job_options_t &options) {
    return options.releases.to.empty() ? show_as_it_is(options) : show_change(options);
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<job_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_keep_going(arguments, options->keep_going);
    declare_mask(arguments, options->mask);
    declare_json(arguments, options->json);
    declare_path(arguments, options->path);
    return [options] { return run(*options); };
}

} // namespace

const command_t effects_command = {
    .name = "effects",
    .summary = "Show what QoS does on the switch, and with --to what becomes of it",
    .examples = "infraconvert effects --from '4.0(1)' switch.cfg\n"
                "infraconvert effects --from '4.0(1)' --to '4.1(3)' switch.cfg\n",
    .declare = declare,
};

} // namespace infraconvert
