#include "base/quoting.h"
#include "reports/findings_text.h"
#include "reports/formats.h"

namespace infraconvert {

namespace {

// Where each configuration has a route of its own, which one it is.
std::string own_route(const fleet_summary_t &summary, const audited_t &audited) {
    const bool tells = summary.route.front().empty() && audited.problem.empty();
    return tells ? route_text(audited.route) + ", " : "";
}

} // namespace

std::string audit_text(const fleet_summary_t &summary) {
    std::string text;
    for (const audited_t &audited : summary.results) {
        text += quoted_name(audited.file) + ": " + own_route(summary, audited) + audited.state() +
                ", " + (audited.verdict.empty() ? "" : audited.verdict + ", ");
        if (!audited.problem.empty())
            text += audited.problem + '\n';
        else
            text += count_text(count_findings(audited.findings)) + '\n' +
                    findings_text(audited.findings, severity_t::note);
    }
    return visible(text);
}

} // namespace infraconvert
