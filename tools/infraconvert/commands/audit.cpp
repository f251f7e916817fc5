// audit: what a conversion would lose, for one configuration or for many.

#include "audit/fixes.h"
#include "base/clock.h"
#include "base/errors.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "commands/progress.h"
#include "commands/reporting.h"
#include "reports/details.h"
#include "reports/unified.h"
#include "window/fleet.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace infraconvert {

namespace {

struct audit_options_t : reporting_options_t {
    route_options_t releases;
    std::vector<std::string> services;
    bool keep_going = false;
    bool mask = false;
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

std::string patch_of(const audited_t &audited, const mending::mended_t &mended,
                     const std::string &original) {
    if (mended.original == original)
        return "";
    const lines_t before = split_lines(original), after = split_lines(mended.original);
    return unified_diff(before, after, difference(before, after),
                        {.before_label = audited.file + '\t' + audited.route.front(),
                         .after_label = audited.file + "\tmended",
                         .context = 3,
                         .color = false,
                         .annotation = {},
                         .margin = 0});
}

// "before.patch" and "after.cfg" of a configuration. Those of an earlier audit go: they would be
// taken for what is to be done now.
void keep_fixes(const outputs_t &outputs, const std::string &folder, const audited_t &audited,
                const mending::mended_t &mended, const std::string &original) {
    const std::string own = folder_for(folder, audited.file);
    const std::pair<std::string, std::string> files[] = {
        {own + "/before.patch", patch_of(audited, mended, original)},
        {own + "/after.cfg", lines_to_type(mended)}};
    for (const auto &[path, text] : files) {
        if (text.empty()) {
            std::filesystem::remove(path);
            continue;
        }
        std::filesystem::create_directories(own);
        outputs.write(path, text);
    }
}

void expect_folders(const std::string &folder, const std::vector<std::string> &files) {
    for (const std::string &file : files) {
        const std::string own = folder_for(folder, file);
        if (std::filesystem::exists(own) && !std::filesystem::is_directory(own))
            throw usage_error_t("--fixes: " + quoted_name(own) +
                                " is no folder, but the one for the fixes of " + shown_name(file) +
                                " would be there; name another folder");
    }
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
    if (options.mask && !options.fixes.empty())
        throw usage_error_t(
            "--fixes writes lines to be typed, with their secrets, and goes without "
            "--mask; an audit for each gives both");
    if (!options.result.empty())
        require_release("--to", options.releases.to);
    fleet.request.route = checked_route(options.releases);
    fleet.request.services = services_named(options.services);
    fleet.request.keep_going = options.keep_going;
    fleet.files = files_of(options.paths);
    choose_what_is_judged(options, fleet);
    fleet.jobs = options.jobs;
    fleet.mask = options.mask;
    fleet.rollback = options.rollback;
    if (options.details || options.format == "html" || !options.report.empty())
        fleet.describe = [&options](const converted_t &conversion) {
            return details_of(conversion, options.keep_going, options.mask);
        };
    return fleet;
}

header_t header_of(const audit_options_t &options, const fleet_t &fleet) {
    header_t header = {.tool_version = INFRACONVERT_VERSION,
                       .date = now(),
                       .route = fleet.request.route,
                       .masked = options.mask,
                       .keep_going = options.keep_going,
                       .count = fleet.files.size()};
    for (const service_t *service : fleet.request.services)
        header.services.emplace_back(service->name);
    return header;
}

// Tells the outputs apart from the files that are read, before any work.
void expect_outputs(const audit_options_t &options, const fleet_t &fleet, outputs_t &outputs) {
    const bool writes = !options.report.empty() || !options.fixes.empty();
    for (const std::string &file : fleet.files)
        writes ? outputs.made_from(file) : outputs_t::only_reads(file);
    if (fleet.result)
        outputs.made_from(configuration_file(options.result));
    if (!options.report.empty())
        outputs.expect("--report", options.report);
    if (!options.fixes.empty()) {
        outputs.make_folder(options.fixes);
        expect_folders(options.fixes, fleet.files);
    }
}

int run(const audit_options_t &options) {
    exceptions_t agreed(options.accept, today());
    fleet_t fleet = fleet_of(options);
    fleet.agreed = &agreed;
    outputs_t outputs;
    expect_outputs(options, fleet, outputs);
    if (!options.fixes.empty())
        fleet.keep_fixes = [&](const audited_t &audited, const mending::mended_t &mended,
                               const std::string &original) {
            keep_fixes(outputs, options.fixes, audited, mended, original);
        };
    std::string page;
    std::vector<std::unique_ptr<writer_t>> others;
    if (!options.report.empty())
        others.push_back(page_writer([&](std::string_view text) { page += text; }));
    progress_t progress(fleet.files.size());
    reporting_t reporting(options, header_of(options, fleet), std::move(others),
                          [&] { progress.clear(); });
    examine_all(fleet, [&](const audited_t &audited) {
        reporting.add(audited);
        progress.step();
    });
    progress.clear();
    const int status = reporting.end(agreed.idle());
    if (!options.report.empty())
        outputs.write(options.report, page);
    tell_idle(agreed);
    return status;
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<audit_options_t>();
    declare_route(arguments, options->releases);
    declare_services(arguments, options->services);
    declare_keep_going(arguments, options->keep_going);
    declare_reporting(arguments, *options);
    arguments.add_option("--report", options->report, "Also write a page for a browser")
        ->type_name("FILE.html")
        ->check(not_empty);
    arguments
        .add_option("--fixes", options->fixes,
                    "Write before.patch and after.cfg of each below this folder")
        ->type_name("DIR")
        ->check(not_empty);
    arguments
        .add_option("--result", options->result,
                    "Judge this as the result of PATH, whoever made it")
        ->type_name("FILE")
        ->check(not_empty);
    arguments.add_flag("--rollback", options->rollback, "Judge the way there and back");
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
