#include "conversion/conversion.h"

#include "base/errors.h"
#include "conversion/history.h"
#include "conversion/installer_call.h"
#include "conversion/logs.h"

#include <algorithm>
#include <set>

namespace infraconvert {

namespace {

step_t step_of(const service_t &service, const release_pair_t &releases, const call_step_t &call,
               const std::string &given) {
    step_t step{&service, 0, routing_of(service, releases), {}, {}};
    if (!call.came_back())
        step.failure = failure_t{.reason = "the converter " + call.trouble};
    else if (call.status != 0)
        step.failure = explain_failure(call.log, given);
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

std::string converted_t::told_rule_of(const script_line_t &line) const {
    const bool of_service = line.step >= 0 && line.step != fix_step;
    return of_service ? told_rules(steps[static_cast<size_t>(line.step)]) : rule_of(line);
}

std::string converted_t::told_rules(const step_t &step) const {
    const std::string at = has_stops() ? "step " + std::to_string(step.hop + 1) + ' ' : "";
    return at + step.routing.ids();
}

namespace {

// Takes the logs along that the request asks for. `last` is the text that they end with, also when
// it does not count.
void take_logs(const logs_t &logs, const conversion_request_t &request, const shared_text_t &last,
               converted_t &conversion) {
    const mask_t *used = nullptr;
    if (request.mask_logs) {
        used = &mask_of(conversion);
        conversion.masked_texts->masked(last);
    }
    if (request.wants_logs)
        conversion.logs = readable_logs(logs, used);
    if (!request.log_directory.empty())
        keep_logs(logs, request.log_directory, used, *request.outputs);
}

// A conversion under way.
class journey_t {
  public:
    explicit journey_t(const conversion_request_t &r)
        : request(r), history(r.text), text(r.edited ? r.edited : r.text) {
        conversion.route = request.route;
        conversion.original = conversion.result = request.text;
        conversion.stages = {text};
        if (request.edited)
            history.record(fix_step, text);
    }

    converted_t run() {
        for (size_t hop = 0; hop < hops_of(request.route) && counts(); hop++)
            make_hop(hop);
        if (counts() && request.typed) {
            text = std::make_shared<const std::string>(request.typed(*text));
            history.record(fix_step, text);
        }
        if (counts())
            conversion.result = text;
        conversion.script = counts() ? history.script() : history_t(request.text).script();
        take_logs(logs, request, text, conversion);
        return std::move(conversion);
    }

  private:
    bool counts() const { return request.keep_going || !conversion.failed(); }

    void make_hop(size_t hop) {
        const release_pair_t releases = hop_of(request.route, hop);
        const shared_text_t given = text;
        const bool wants_logs = request.wants_logs || !request.log_directory.empty();
        const call_result_t call = call_installer({given, releases, request.services, wants_logs});
        for (size_t i = 0; i < request.services.size(); i++) {
            text = call.steps[i].after;
            step_t step = step_of(*request.services[i], releases, call.steps[i], *given);
            step.hop = hop;
            step.changed = history.record(static_cast<int>(conversion.steps.size()), text);
            conversion.steps.push_back(std::move(step));
        }
        conversion.stages.push_back(text);
        for (const auto &[name, log] : call.logs)
            logs[folder_of(hop) + name] = log;
    }

    // The services log under the same names on every hop.
    std::string folder_of(size_t hop) const {
        return conversion.has_stops() ? "step" + std::to_string(hop + 1) + '/' : "";
    }

    const conversion_request_t &request;
    converted_t conversion;
    history_t history;
    shared_text_t text;
    logs_t logs;
};

} // namespace

converted_t run_conversion(const conversion_request_t &request) { return journey_t(request).run(); }

const mask_t &mask_of(const converted_t &conversion) {
    for (const shared_text_t &text : conversion.stages)
        conversion.masked_texts->masked(text);
    conversion.masked_texts->masked(conversion.original);
    conversion.masked_texts->masked(conversion.result);
    return conversion.masked_texts->mask();
}

} // namespace infraconvert
