#include "commands/reporting.h"

#include "base/errors.h"
#include "base/messages.h"
#include "reports/first_screen.h"

#include <algorithm>
#include <optional>

namespace infraconvert {

namespace {

// The least severity for which the command does not exit with 0; none: there is none.
std::optional<severity_t> failing_severity(const std::string &name) {
    for (const severity_t severity : {severity_t::error, severity_t::warning}) {
        if (name == severity_name(severity))
            return severity;
    }
    return std::nullopt;
}

std::string known_format(const std::string &name) {
    const bool known = std::any_of(formats().begin(), formats().end(),
                                   [&](const format_t &format) { return format.name == name; });
    return known ? "" : "there is no format '" + name + "': " + format_names();
}

} // namespace

void declare_reporting(CLI::App &arguments, reporting_options_t &options) {
    arguments.add_option("--format", options.format, "Findings as " + format_names() + " [text]")
        ->type_name("FORMAT")
        ->check(CLI::Validator(known_format, ""));
    declare_json(arguments, options.format);
    arguments.add_flag("--details", options.details,
                       "All about each configuration, in JSON also differences");
    arguments
        .add_option("--fail-on", options.fail_on,
                    "What ends it with status 4: error, warning, never [error]")
        ->type_name("WHICH")
        ->check(CLI::IsMember({"error", "warning", "never"}).description(""));
}

reporting_t::reporting_t(const reporting_options_t &how, header_t head,
                         std::vector<std::unique_ptr<writer_t>> others,
                         const std::function<void()> &before_output)
    : options(how), header(std::move(head)), writers(std::move(others)), status(exit_done) {
    header.details = options.details;
    writers.insert(writers.begin(), writer_named(options.format, [=](std::string_view text) {
                       before_output();
                       write_output(text);
                   }));
    for (const auto &writer : writers)
        writer->begin(header);
}

void reporting_t::add(const audited_t &audited) {
    totals.add(audited);
    status = worse(status, audited.exit_status(failing_severity(options.fail_on)));
    for (const auto &writer : writers)
        writer->add(audited);
}

int reporting_t::end(std::vector<std::string> idle) {
    totals.idle = std::move(idle);
    for (const auto &writer : writers)
        writer->end(totals);
    if (header.count == 1)
        message_lines(states_table(header, totals));
    else if (options.format != "text")
        message_lines("infraconvert: " + totals_lines(header, totals));
    return status;
}

} // namespace infraconvert
