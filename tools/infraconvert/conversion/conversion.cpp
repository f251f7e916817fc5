#include "conversion/conversion.h"

#include "base/errors.h"
#include "conversion/history.h"
#include "conversion/installer_call.h"
#include "conversion/logs.h"

#include <algorithm>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;

// The private copy of the configuration while the services work on it.
class workplace_t {
  public:
    explicit workplace_t(const conversion_request_t &request)
        : original(*request.text), releases(request.releases),
          wants_logs(request.wants_logs || !request.log_directory.empty()) {
        fs::create_directories(configuration.parent_path());
        fs::create_directory(logs());
        write_plainly(configuration, original);
    }

    fs::path logs() const { return directory.path / "logs"; }

    // Has one service convert `text`, which is replaced by what the service makes of it.
    step_t run_service(const service_t &service, shared_text_t &text) {
        step_t step{&service, route(service, releases), {}, {}};
        call_result_t call = call_installer(call_of(service, !wants_logs));
        if (call.came_back && call.status != 0 && !wants_logs) // once more, to learn the reason
            call = call_installer(call_of(service, false));
        if (!call.came_back) {
            step.failure = failure_t{.reason = "the converter " + call.trouble};
            write_plainly(configuration, *text);
        } else if (call.status != 0) {
            step.failure = explain_failure(read_log(logs() / service.log_name), original);
        }
        if (std::string converted = read_file(configuration); converted != *text)
            text = std::make_shared<const std::string>(std::move(converted));
        return step;
    }

  private:
    call_t call_of(const service_t &service, bool quiet) const {
        return {directory.path, logs(), releases, service, quiet};
    }

    const private_directory_t directory;
    const fs::path configuration = directory.path / configuration_in_directory;
    const std::string &original;
    const release_pair_t &releases;
    const bool wants_logs;
};

} // namespace

const char *step_t::state() const {
    if (failure)
        return "failed";
    if (changes())
        return "converted";
    return routing.rules.empty() ? "no rule" : "unchanged";
}

bool converted_t::failed() const {
    return std::any_of(steps.begin(), steps.end(), [](const step_t &s) { return s.failure; });
}

std::string converted_t::rule_of(const script_line_t &line) const {
    return line.step < 0 ? "-" : steps[static_cast<size_t>(line.step)].routing.ids();
}

namespace {

// Takes the logs along that the request asks for. `last` is the text that they end with, also when
// it does not count.
void take_logs(const fs::path &directory, const conversion_request_t &request,
               const std::string &last, converted_t &conversion) {
    mask_t mask;
    if (request.mask_logs) {
        mask = mask_of(conversion);
        mask.learn(last);
    }
    const mask_t *used = request.mask_logs ? &mask : nullptr;
    if (request.wants_logs)
        conversion.logs = readable_logs(directory, used);
    if (!request.log_directory.empty())
        keep_logs(directory, request.log_directory, used, *request.outputs);
}

} // namespace

converted_t run_conversion(const conversion_request_t &request) {
    converted_t conversion = {.releases = request.releases,
                              .original = request.text,
                              .result = request.text,
                              .steps = {},
                              .script = {},
                              .logs = {},
                              .masked = false};
    workplace_t workplace(request);
    history_t history(request.text);
    shared_text_t text = request.text;
    for (const service_t *service : request.services) {
        step_t step = workplace.run_service(*service, text);
        step.changed = history.record(static_cast<int>(conversion.steps.size()), text);
        conversion.steps.push_back(std::move(step));
    }
    const bool counts = request.keep_going || !conversion.failed();
    if (counts)
        conversion.result = text;
    conversion.script = counts ? history.script() : history_t(request.text).script();
    take_logs(workplace.logs(), request, *text, conversion);
    return conversion;
}

mask_t mask_of(const converted_t &conversion) {
    mask_t mask;
    mask.learn(*conversion.original);
    mask.learn(*conversion.result);
    return mask;
}

} // namespace infraconvert
