// report: parts of an audit, made by many processes, as one report.

#include "base/errors.h"
#include "base/messages.h"
#include "commands/progress.h"
#include "commands/reporting.h"
#include "reports/parts.h"

#include <memory>

namespace infraconvert {

namespace {

struct report_options_t : reporting_options_t {
    std::vector<std::string> parts;
};

bool lacks(const audited_t &audited) {
    return !audited.details && audited.state != state_t::unusable;
}

int run(const report_options_t &options) {
    if (options.parts.empty())
        throw usage_error_t(
            "missing PART, a file that infraconvert audit --format jsonl has written");
    outputs_t outputs; // standard output must not go into a part
    for (const std::string &part : options.parts)
        outputs.made_from(part);
    const parts_t parts(options.parts);
    if (const std::string repeated = parts.repeated(); !repeated.empty())
        message("warning: " + repeated);
    progress_t progress(parts.header().count);
    reporting_t reporting(options, parts.header(), {}, [&] { progress.clear(); });
    const bool shows_details = options.details || options.format == "html";
    bool lacks_details = false;
    parts.for_each([&](audited_t audited) {
        if (!shows_details)
            audited.details.reset();
        lacks_details = lacks_details || (shows_details && lacks(audited));
        reporting.add(audited);
        progress.step();
    });
    progress.clear();
    const int status = reporting.end(parts.idle());
    if (lacks_details)
        message(
            "warning: differences and effects are missing where a part was made without --details");
    for (const std::string &said : parts.idle())
        message("warning: " + said);
    return status;
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<report_options_t>();
    declare_reporting(arguments, *options);
    arguments.add_option("PART", options->parts, "What audit --format jsonl wrote, in order")
        ->type_name("")
        ->check(not_empty);
    return [options] { return run(*options); };
}

} // namespace

const command_t report_command = {
    .name = "report",
    .summary = "Make one report of parts that several audits wrote",
    .examples = "infraconvert audit --to '5.0(3)' --details --format jsonl east/ > 1.jsonl\n"
                "infraconvert audit --to '5.0(3)' --details --format jsonl west/ > 2.jsonl\n"
                "infraconvert report --format html 1.jsonl 2.jsonl > window.html\n"
                "infraconvert report 1.jsonl 2.jsonl\n",
    .declare = declare,
};

} // namespace infraconvert
