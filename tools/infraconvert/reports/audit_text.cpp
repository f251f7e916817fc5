#include "base/quoting.h"
#include "reports/findings_text.h"
#include "reports/formats.h"

namespace infraconvert {

std::string audit_text(const fleet_summary_t &summary) {
    std::string text;
    for (const audited_t &audited : summary.results) {
        text += quoted_name(audited.file) + ": " + audited.state() + ", " +
                (audited.verdict.empty() ? "" : audited.verdict + ", ");
        if (!audited.problem.empty())
            text += audited.problem + '\n';
        else
            text += count_text(count_findings(audited.findings)) + '\n' +
                    findings_text(audited.findings, severity_t::note);
    }
    return visible(text);
}

} // namespace infraconvert
