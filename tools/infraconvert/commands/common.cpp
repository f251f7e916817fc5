#include "commands/common.h"

#include "audit/fixes.h"
#include "base/errors.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "conversion/version_line.h"
#include "window/crew.h"

namespace infraconvert {

namespace {

constexpr const char *all_codes = "all";

void declare_max_size(CLI::App &arguments) {
    arguments
        .add_option_function<uint64_t>("--max-size", set_most_megabytes,
                                       "Refuse larger configurations [" +
                                           std::to_string(usual_megabytes) + "]")
        ->type_name("MEGABYTES")
        ->check(CLI::Range(uint64_t{1}, most_megabytes).description(""));
}

} // namespace

const CLI::Validator
    not_empty([](const std::string &text) { return text.empty() ? "the name is empty" : ""; }, "");

namespace {

route_t route_as_written(const route_options_t &options) {
    route_t route = {options.from};
    route.insert(route.end(), options.via.begin(), options.via.end());
    if (!options.to.empty())
        route.push_back(options.to);
    return route;
}

} // namespace

route_t checked_route(const route_options_t &options) {
    if (!options.from.empty())
        check_release("--from", options.from);
    for (const std::string &stop : options.via)
        check_release("--via", stop);
    if (!options.to.empty())
        check_release("--to", options.to);
    else if (!options.via.empty())
        throw usage_error_t("--via goes with a conversion only, and --to is missing");
    return route_as_written(options);
}

route_t told_route_for(const std::string &name, const std::string &configuration,
                       const route_t &wanted, bool tells) {
    route_t route;
    try {
        route = route_for(configuration, wanted);
    } catch (const input_error_t &e) {
        throw input_error_t(name + ": " + e.what());
    }
    if (tells && wanted.front().empty())
        message(name + ": from " + route.front() + ", as its \"version\" line says");
    return route;
}

void declare_route(CLI::App &arguments, route_options_t &route) {
    arguments
        .add_option("--from", route.from, "Release that wrote it [what its \"version\" line says]")
        ->type_name("RELEASE");
    arguments.add_option("--to", route.to, "Release that will read it")->type_name("RELEASE");
    arguments.add_option("--via", route.via, "Releases on the way, each a step of its own")
        ->type_name("RELEASE,...")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void declare_services(CLI::App &arguments, std::vector<std::string> &chosen) {
    std::string names;
    for (const service_t &service : services())
        (names += names.empty() ? "" : ", ") += service.name;
    arguments.add_option("--service", chosen, "Only these: " + names)
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void declare_paths(CLI::App &arguments, paths_t &paths) {
    arguments
        .add_option("PATH", paths.given, "Configurations, directories with configurations, or -")
        ->type_name("")
        ->check(not_empty);
    arguments
        .add_option("--files-from", paths.list,
                    "Also the paths in this file, or on standard input: -")
        ->type_name("FILE")
        ->check(not_empty);
    declare_max_size(arguments);
}

void declare_jobs(CLI::App &arguments, size_t &jobs) {
    jobs = usual_jobs();
    arguments.add_option("-j,--jobs", jobs, "Configurations at a time [one for each processor]")
        ->type_name("N")
        ->check(CLI::Range(size_t{1}, size_t{256}).description(""));
}

void declare_accept(CLI::App &arguments, std::vector<std::string> &accept) {
    arguments
        .add_option("--accept", accept, "Agreed findings, which stop nothing: a code, or a list")
        ->type_name("CODE|@FILE")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void declare_json(CLI::App &arguments, bool &json) {
    arguments.add_flag("--json", json, "Print one JSON object on standard output");
}

void declare_json(CLI::App &arguments, std::string &format) {
    arguments.add_flag_callback(
        "--json", [&format] { format = "json"; }, "The same as --format json");
}

void declare_logs(CLI::App &arguments, bool &log, std::string &log_dir) {
    arguments.add_flag("--log", log, "Show the converters' logs on standard error");
    arguments.add_option("--log-dir", log_dir, "Keep the converters' logs in this directory")
        ->type_name("DIR")
        ->check(not_empty);
}

void declare_mask(CLI::App &arguments, bool &mask) {
    arguments.add_flag("--mask", mask, "Hide passwords, keys and the like in what is shown");
}

void declare_keep_going(CLI::App &arguments, bool &keep_going) {
    arguments.add_flag("--keep-going", keep_going,
                       "Go on past a service that fails, as the installer does");
}

void declare_mend(CLI::App &arguments, std::string &mend) {
    arguments
        .add_flag(std::string("--mend{") + all_codes + "}", mend,
                  "Mend what would be lost, where audit shows fixes: all, or of "
                  "findings with these codes")
        ->type_name("=CODE,...");
}

std::vector<std::string> paths_as_given(const paths_t &paths) {
    std::vector<std::string> all = paths.given;
    if (!paths.list.empty()) {
        std::vector<std::string> listed = listed_paths(paths.list);
        std::move(listed.begin(), listed.end(), std::back_inserter(all));
    }
    return all;
}

std::vector<std::string> files_of(const paths_t &paths) {
    const std::vector<std::string> all = paths_as_given(paths);
    if (paths.list == standard_stream &&
        std::find(all.begin(), all.end(), standard_stream) != all.end())
        throw usage_error_t("standard input holds the list of files, so it is no configuration");
    if (all.empty())
        throw usage_error_t(paths.list.empty() ? "missing PATH of a configuration"
                                               : quoted_name(paths.list) + " lists no files");
    configurations_t found = find_configurations(all);
    const std::string passed_by = found.passed_by.in_words();
    if (!passed_by.empty())
        message("passed by " + passed_by);
    if (found.files.empty())
        throw usage_error_t("no configuration stands below the directories");
    return std::move(found.files);
}

void tell_idle(const exceptions_t &exceptions) {
    for (const std::string &words : exceptions.idle())
        message(words);
}

job_t read_job(const job_options_t &options) {
    if (options.alone)
        require_release("--to", options.releases.to);
    const route_t wanted =
        options.alone ? checked_route(options.releases) : route_as_written(options.releases);
    const auto chosen = services_named(options.services);
    if (options.path.empty())
        throw usage_error_t("missing PATH of the configuration");
    const std::string file = configuration_file(options.path);
    const auto outputs = std::make_shared<outputs_t>();
    outputs->made_from(file);
    const shared_text_t text = read_configuration(file);
    const route_t route = told_route_for(shown_name(file), *text, wanted, options.alone);
    if (options.alone)
        compare_with_version_line(*text, route.front());
    return {.file = file,
            .outputs = outputs,
            .request = {.text = text,
                        .route = route,
                        .services = chosen,
                        .keep_going = options.keep_going,
                        .wants_logs = options.log,
                        .log_directory = options.log_dir,
                        .outputs = outputs,
                        .mask_logs = options.mask},
            .mends = !options.mend.empty(),
            .mended_codes = codes_to_mend(options.mend)};
}

std::set<std::string> codes_to_mend(const std::string &mend) {
    std::set<std::string> codes;
    if (mend.empty() || mend == all_codes)
        return codes;
    for (size_t from = 0; from <= mend.size();) {
        const size_t end = std::min(mend.find(',', from), mend.size());
        const finding_kind_t *kind = finding_kind_named(mend.substr(from, end - from));
        if (!kind)
            throw usage_error_t("--mend: no finding has the code '" +
                                mend.substr(from, end - from) +
                                "' (infraconvert explain lists all)");
        codes.insert(kind->code);
        from = end + 1;
    }
    return codes;
}

converted_t run_job(const job_t &job) {
    converted_t conversion = run_conversion(job.request);
    if (job.mends) {
        const mending::mended_t mended = mend_conversion(conversion, job.request, job.mended_codes);
        if (!mended.fixes.empty())
            conversion = with_fixes(job.request, mended);
    }
    message_lines(conversion.logs);
    return conversion;
}

std::string plain_name(const std::string &file) {
    return file == standard_stream ? "standard input" : file;
}

std::string shown_name(const std::string &file) { return quoted_name(plain_name(file)); }

} // namespace infraconvert
