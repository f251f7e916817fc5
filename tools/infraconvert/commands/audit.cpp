// audit: what a conversion would lose, for one configuration or for many.

#include "audit/fixes.h"
#include "base/errors.h"
#include "base/messages.h"
#include "commands/common.h"
#include "reports/audit_page.h"
#include "reports/formats.h"
#include "reports/unified.h"
#include "window/fleet.h"

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace infraconvert {

namespace {

struct audit_options_t {
    route_options_t releases;
    std::vector<std::string> services;
    bool keep_going = false;
    bool json = false, mask = false;
    std::string format = "text";
    std::string report; // empty: none
    std::string fixes;  // a folder; empty: none
    std::string result; // a file that is judged in place of a conversion; empty: none
    bool rollback = false;
    std::vector<std::string> accept; // codes, and files behind "@"
    size_t jobs = 1;
    paths_t paths;
};

// Where the fixes of a configuration go: below the folder, by its path.
std::string folder_for(const std::string &folder, const std::string &file) {
    const std::filesystem::path path =
        std::filesystem::absolute(file).lexically_normal().relative_path();
    const std::filesystem::path near = std::filesystem::path(file).lexically_normal();
    const bool below = near.is_relative() && !near.string().starts_with("..");
    return folder + '/' + (below ? near : path).string();
}

// "before.patch" and "after.cfg" of a configuration.
void keep_fixes(const outputs_t &outputs, const std::string &folder, const audited_t &audited,
                const mending::mended_t &mended) {
    const std::string own = folder_for(folder, audited.file);
    std::filesystem::create_directories(own);
    const std::string original = *read_configuration(audited.file);
    if (mended.original != original) {
        const lines_t before = split_lines(original), after = split_lines(mended.original);
        outputs.write(own + "/before.patch",
                      unified_diff(before, after, difference(before, after),
                                   {.before_label = audited.file + '\t' + audited.route.front(),
                                    .after_label = audited.file + "\tmended",
                                    .context = 3,
                                    .color = false,
                                    .annotation = {},
                                    .margin = 0}));
    }
    if (const std::string lines = lines_to_type(mended); !lines.empty())
        outputs.write(own + "/after.cfg", lines);
}

// Options about the converters, where none runs.
void refuse_options_of_conversions(const audit_options_t &options, const char *without) {
    const char *first = !options.services.empty() ? "--service"
                        : options.keep_going      ? "--keep-going"
                        : options.rollback        ? "--rollback"
                                                  : nullptr;
    if (first)
        throw usage_error_t(std::string(first) + " goes with a conversion only, and " + without);
}

// What stands in place of a conversion, if anything does.
void choose_what_is_judged(const audit_options_t &options, fleet_t &fleet) {
    if (!options.result.empty()) {
        refuse_options_of_conversions(options, "--result brings a result of its own");
        if (fleet.files.size() != 1)
            throw usage_error_t("--result goes with one PATH, that of its original");
        fleet.result = read_configuration(configuration_file(options.result));
    } else if (options.releases.to.empty()) {
        refuse_options_of_conversions(options, "--to is missing");
        if (!options.report.empty())
            throw usage_error_t("--report shows conversions, and --to is missing");
        if (!options.fixes.empty())
            throw usage_error_t("--fixes goes with two releases, and --to is missing");
        fleet.form_alone = true;
    }
}

fleet_t fleet_of(const audit_options_t &options) {
    fleet_t fleet;
    if (!options.result.empty())
        check_release("--to", options.releases.to);
    fleet.request.route = checked_route(options.releases);
    fleet.request.services = services_named(options.services);
    fleet.request.keep_going = options.keep_going;
    fleet.files = files_of(options.paths);
    choose_what_is_judged(options, fleet);
    fleet.jobs = options.jobs;
    fleet.mask = options.mask;
    fleet.rollback = options.rollback;
    if (!options.report.empty())
        fleet.describe = [&options](const audited_t &audited, const converted_t &conversion) {
            return report_details(audited, conversion, options.mask);
        };
    if (fleet.files.size() > 1 && isatty(STDERR_FILENO))
        fleet.progress = [total = fleet.files.size()](size_t done) {
            constexpr size_t width = 40;
            const size_t filled = done * width / total;
            draw("\r[" + std::string(filled, '#') + std::string(width - filled, '.') + "] " +
                 std::to_string(done) + '/' + std::to_string(total) +
                 (done == total ? "\r\x1b[K" : ""));
        };
    return fleet;
}

std::vector<std::string> format_names() {
    std::vector<std::string> names;
    for (const format_t &format : formats())
        names.emplace_back(format.name);
    return names;
}

// "text, json or sarif"
std::string listed(const std::vector<std::string> &names) {
    std::string text = names[0];
    for (size_t i = 1; i < names.size(); i++)
        text += (i + 1 < names.size() ? ", " : " or ") + names[i];
    return text;
}

std::string in_format(const std::string &name, const fleet_summary_t &summary) {
    const auto format = std::find_if(formats().begin(), formats().end(),
                                     [&](const format_t &f) { return f.name == name; });
    return format->write(summary);
}

int status_of(const std::vector<audited_t> &results) {
    int status = exit_done;
    for (const audited_t &audited : results)
        status = worse(status, audited.exit_status());
    return status;
}

int run(const audit_options_t &options) {
    fleet_t fleet = fleet_of(options);
    outputs_t outputs;
    for (const std::string &file : fleet.files)
        outputs.made_from(file);
    if (fleet.result)
        outputs.made_from(configuration_file(options.result));
    if (!options.report.empty())
        outputs.expect("--report", options.report);
    if (!options.fixes.empty()) {
        outputs.make_folder(options.fixes);
        fleet.keep_fixes = [&](const audited_t &audited, const mending::mended_t &mended) {
            keep_fixes(outputs, options.fixes, audited, mended);
        };
    }
    exceptions_t agreed(options.accept, today());
    fleet.agreed = &agreed;
    const std::vector<audited_t> results = audit_all(fleet);
    const fleet_summary_t summary = {fleet.request.route, results};
    if (!options.report.empty())
        outputs.write(options.report, report_page(summary));
    write_output(in_format(options.json ? "json" : options.format, summary));
    message_lines(summary.table());
    tell_idle(agreed);
    return status_of(results);
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<audit_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_keep_going(arguments, options->keep_going);
    const std::vector<std::string> names = format_names();
    arguments.add_option("--format", options->format, "Findings as " + listed(names) + " [text]")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names).description(""));
    arguments.add_flag("--json", options->json, "The same as --format json");
    arguments
        .add_option("--report", options->report,
                    "Also write a page with findings and differences, for a browser")
        ->type_name("FILE.html")
        ->check(not_empty);
    arguments
        .add_option("--fixes", options->fixes,
                    "Write the fixes of each configuration below this folder: before.patch and "
                    "after.cfg")
        ->type_name("DIR")
        ->check(not_empty);
    arguments
        .add_option("--result", options->result,
                    "Judge this result of PATH, whoever made it, in place of a conversion")
        ->type_name("FILE")
        ->check(not_empty);
    arguments.add_flag("--rollback", options->rollback,
                       "Judge the way there and back, with the lines that restore what it loses");
    declare_mask(arguments, options->mask);
    declare_accept(arguments, options->accept);
    declare_jobs(arguments, options->jobs);
    declare_paths(arguments, options->paths);
    return [options] { return run(*options); };
}

} // namespace

const command_t audit_command = {
    .name = "audit",
    .summary = "Find what a conversion loses or changes, or what a release would not read",
    .examples = "infraconvert audit --from '4.0(1)' --to '4.1(3)' switch.cfg\n"
                "infraconvert audit --from '4.0(1)' --to '4.1(3)' --report w.html sites/\n"
                "infraconvert audit --from '4.0(1)' --to '4.1(3)' --format sarif *.cfg\n"
                "infraconvert audit --from '4.0(1)' --to '4.1(3)' --result b.cfg a.cfg\n"
                "infraconvert audit --from '4.1(3)' switch.cfg\n"
                "infraconvert explain IC041\n",
    .declare = declare,
};

} // namespace infraconvert
