#include "reports/reports.h"

#include "base/messages.h"
#include "reports/report_text.h"

namespace infraconvert {

fleet_summary_t::fleet_summary_t(const release_pair_t &pair, const std::vector<audited_t> &results)
    : releases(pair), files(results.size()) {
    for (const audited_t &audited : results) {
        states[audited.state()]++;
        std::string last;
        for (const finding_t &finding : audited.findings) {
            code_count_t &count = codes[finding.kind->code];
            count.findings++;
            count.files += finding.kind->code != last;
            last = finding.kind->code;
        }
    }
}

std::string fleet_summary_t::table() const {
    constexpr size_t state_width = 11, code_width = 8, severity_width = 9, count_width = 10;
    std::string text = "infraconvert: " + std::to_string(files) +
                       (files == 1 ? " configuration, " : " configurations, ") + releases.from +
                       " to " + releases.to + ":\n";
    for (const char *state : {"unchanged", "changed", "failed", "unusable"}) {
        if (states.contains(state))
            text += "  " + padded(state, state_width) + std::to_string(states.at(state)) + '\n';
    }
    if (files == 1 || codes.empty())
        return text;
    text += "  " + padded("code", code_width) + padded("severity", severity_width) +
            padded("findings", count_width) + padded("files", count_width) + "title\n";
    for (const severity_t severity : {severity_t::error, severity_t::warning, severity_t::note}) {
        for (const auto &[code, count] : codes) {
            const finding_kind_t &kind = *finding_kind_named(code);
            if (kind.severity == severity)
                text += "  " + padded(code, code_width) +
                        padded(severity_name(severity), severity_width) +
                        padded(std::to_string(count.findings), count_width) +
                        padded(std::to_string(count.files), count_width) + kind.title + '\n';
        }
    }
    return text;
}

std::string audit_text(const std::vector<audited_t> &results) {
    std::string text;
    for (const audited_t &audited : results) {
        text += audited.file + ": " + audited.state() + ", ";
        if (!audited.problem.empty())
            text += audited.problem + '\n';
        else
            text += count_text(count_findings(audited.findings)) + '\n' +
                    findings_text(audited.findings, severity_t::note);
    }
    return text;
}

} // namespace infraconvert
