#include "conversion/conversion.h"

#include "base/errors.h"
#include "conversion/history.h"
#include "conversion/installer_call.h"
#include "conversion/logs.h"

#include <algorithm>

namespace infraconvert {

namespace {

step_t step_of(const service_t &service, const release_pair_t &releases, const call_step_t &call,
               const std::string &original) {
    step_t step{&service, route(service, releases), {}, {}};
    if (!call.came_back())
        step.failure = failure_t{.reason = "the converter " + call.trouble};
    else if (call.status != 0)
        step.failure = explain_failure(call.log, original);
    return step;
}

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

count_t converted_t::changes_of_fixes() const {
    count_t count;
    for (const script_line_t &line : script) {
        if (line.step != fix_step)
            continue;
        count.added += line.edit == line_edit_t::add;
        count.removed += line.edit == line_edit_t::remove;
    }
    return count;
}

std::string converted_t::rule_of(const script_line_t &line) const {
    if (line.step == fix_step)
        return "fix";
    return line.step < 0 ? "-" : steps[static_cast<size_t>(line.step)].routing.ids();
}

namespace {

// Takes the logs along that the request asks for. `last` is the text that they end with, also when
// it does not count.
void take_logs(const logs_t &logs, const conversion_request_t &request, const std::string &last,
               converted_t &conversion) {
    mask_t mask;
    if (request.mask_logs) {
        mask = mask_of(conversion);
        mask.learn(last);
    }
    const mask_t *used = request.mask_logs ? &mask : nullptr;
    if (request.wants_logs)
        conversion.logs = readable_logs(logs, used);
    if (!request.log_directory.empty())
        keep_logs(logs, request.log_directory, used, *request.outputs);
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
    const bool wants_logs = request.wants_logs || !request.log_directory.empty();
    history_t history(request.text);
    shared_text_t text = request.edited ? request.edited : request.text;
    if (request.edited)
        history.record(fix_step, text);
    const shared_text_t given = text;
    const call_result_t call =
        call_installer({given, request.releases, request.services, wants_logs});
    for (size_t i = 0; i < request.services.size(); i++) {
        text = call.steps[i].after;
        step_t step = step_of(*request.services[i], request.releases, call.steps[i], *given);
        step.changed = history.record(static_cast<int>(i), text);
        conversion.steps.push_back(std::move(step));
    }
    const bool counts = request.keep_going || !conversion.failed();
    if (counts && request.typed) {
        text = std::make_shared<const std::string>(request.typed(*text));
        history.record(fix_step, text);
    }
    if (counts)
        conversion.result = text;
    conversion.script = counts ? history.script() : history_t(request.text).script();
    take_logs(call.logs, request, *text, conversion);
    return conversion;
}

mask_t mask_of(const converted_t &conversion) {
    mask_t mask;
    mask.learn(*conversion.original);
    mask.learn(*conversion.result);
    return mask;
}

} // namespace infraconvert
