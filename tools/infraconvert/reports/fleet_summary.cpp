#include "reports/fleet_summary.h"

#include "base/messages.h"

namespace infraconvert {

fleet_summary_t::fleet_summary_t(const route_t &way, const std::vector<audited_t> &audited)
    : route(way), results(audited) {
    for (const audited_t &each : results) {
        states[each.state()]++;
        std::string last;
        for (const finding_t &finding : each.findings) {
            code_count_t &count = codes[finding.kind->code];
            count.kind = finding.kind;
            count.findings++;
            count.files += finding.kind->code != last;
            last = finding.kind->code;
        }
    }
}

std::string fleet_summary_t::table() const {
    constexpr size_t state_width = 11, code_width = 8, severity_width = 9, count_width = 10;
    std::string text = "infraconvert: " + std::to_string(results.size()) +
                       (results.size() == 1 ? " configuration, " : " configurations, ") +
                       route_text(route) + ":\n";
    for (const char *state : {"checked", "unchanged", "changed", "failed", "unusable"}) {
        if (states.contains(state))
            text += "  " + column(state, state_width) + std::to_string(states.at(state)) + '\n';
    }
    if (results.size() == 1 || codes.empty())
        return text;
    text += "  " + column("code", code_width) + column("severity", severity_width) +
            column("findings", count_width) + column("files", count_width) + "title\n";
    for (const severity_t severity : {severity_t::error, severity_t::warning, severity_t::note}) {
        for (const auto &[code, count] : codes) {
            if (count.kind->severity == severity)
                text += "  " + column(code, code_width) +
                        column(severity_name(severity), severity_width) +
                        column(std::to_string(count.findings), count_width) +
                        column(std::to_string(count.files), count_width) + count.kind->title + '\n';
        }
    }
    return text;
}

} // namespace infraconvert
