#include "reports/summary.h"

#include "base/messages.h"

namespace infraconvert {

namespace {

constexpr size_t name_width = 10, rule_width = 12, state_width = 14, count_width = 12;

std::string counts(const count_t &changed) {
    if (changed.added + changed.removed == 0)
        return "";
    return '+' + std::to_string(changed.added) + " -" + std::to_string(changed.removed);
}

std::string step_line(const step_t &step) {
    const std::string columns =
        "  " + column(step.service->name, name_width) + column(step.routing.ids(), rule_width) +
        column(step.state(), state_width) + column(counts(step.changed), count_width);
    return columns.substr(0, columns.find_last_not_of(' ') + 1) + '\n';
}

std::string hop_line(const route_t &route, size_t hop) {
    const auto &[from, to] = hop_of(route, hop);
    return " step " + std::to_string(hop + 1) + ", " + from + " to " + to + ":\n";
}

void tell_failure(const std::string &name, const step_t &step, const converted_t &conversion) {
    const failure_t &failure = *step.failure;
    const std::string release = hop_of(conversion.route, step.hop).from;
    const std::string place = step.hop == 0 ? name : "as " + release + " has it";
    const lines_t lines = split_lines(conversion.given(step));
    message(std::string(step.service->name) + " failed: " + failure.reason);
    for (const size_t number : failure.lines)
        message_lines("  " + place + ':' + std::to_string(number) + ": " +
                      std::string(without_newline(lines[number - 1])) + '\n');
    if (!failure.log_line.empty())
        message_lines("  " + std::string(step.service->log_name) + ':' +
                      std::to_string(failure.log_line_number) + ": " + failure.log_line + '\n');
}

} // namespace

void tell_summary(const std::string &name, const converted_t &conversion) {
    message(name + ", " + route_text(conversion.route) + ':');
    for (size_t i = 0; i < conversion.steps.size(); i++) {
        const step_t &step = conversion.steps[i];
        if (conversion.has_stops() && (i == 0 || conversion.steps[i - 1].hop < step.hop))
            message_lines(hop_line(conversion.route, step.hop));
        message_lines(step_line(step));
    }
    const count_t fixed = conversion.changes_of_fixes();
    if (fixed.added + fixed.removed > 0)
        message_lines("  " + column("fixes", name_width) + column("-", rule_width) +
                      column("mended", state_width) + counts(fixed) + '\n');
    for (const step_t &step : conversion.steps) {
        if (step.failure)
            tell_failure(name, step, conversion);
    }
}

std::string plan_table(const std::vector<const service_t *> &chosen, const route_t &route) {
    constexpr size_t words_column = name_width + rule_width;
    std::string table;
    for (size_t hop = 0; hop < hops_of(route); hop++) {
        const release_pair_t releases = hop_of(route, hop);
        table += (hop > 0 ? "\n" : "") + column("service", name_width) +
                 column("rule", rule_width) + releases.from + " to " + releases.to + '\n';
        for (const service_t *service : chosen) {
            const routing_t routing = routing_of(*service, releases);
            table += column(service->name, name_width) + column(routing.ids(), rule_width) +
                     wrapped(routing.words(), words_column) + '\n';
        }
    }
    return table;
}

} // namespace infraconvert
