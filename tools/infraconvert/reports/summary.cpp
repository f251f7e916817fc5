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

void tell_failure(const std::string &name, const step_t &step, const lines_t &lines) {
    const failure_t &failure = *step.failure;
    message(std::string(step.service->name) + " failed: " + failure.reason);
    for (const size_t number : failure.lines)
        message_lines("  " + name + ':' + std::to_string(number) + ": " +
                      std::string(without_newline(lines[number - 1])) + '\n');
    if (!failure.log_line.empty())
        message_lines("  " + std::string(step.service->log_name) + ':' +
                      std::to_string(failure.log_line_number) + ": " + failure.log_line + '\n');
}

} // namespace

void tell_summary(const std::string &name, const converted_t &conversion) {
    message(name + ", " + conversion.releases.from + " to " + conversion.releases.to + ':');
    for (const step_t &step : conversion.steps)
        message_lines(step_line(step));
    const count_t fixed = conversion.changes_of_fixes();
    if (fixed.added + fixed.removed > 0)
        message_lines("  " + column("fixes", name_width) + column("-", rule_width) +
                      column("mended", state_width) + counts(fixed) + '\n');
    const lines_t lines = split_lines(*conversion.original);
    for (const step_t &step : conversion.steps) {
        if (step.failure)
            tell_failure(name, step, lines);
    }
}

std::string plan_table(const std::vector<const service_t *> &chosen,
                       const release_pair_t &releases) {
    constexpr size_t words_column = name_width + rule_width;
    std::string table = column("service", name_width) + column("rule", rule_width) + releases.from +
                        " to " + releases.to + '\n';
    for (const service_t *service : chosen) {
        const routing_t routing = route(*service, releases);
        table += column(service->name, name_width) + column(routing.ids(), rule_width) +
                 wrapped(routing.words(), words_column) + '\n';
    }
    return table;
}

} // namespace infraconvert
