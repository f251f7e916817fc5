#include "reports/conversion_findings.h"

#include "audit/audit.h"
#include "audit/fixes.h"
#include "audit/masked_findings.h"
#include "base/messages.h"
#include "reports/findings_text.h"

#include <set>

namespace infraconvert {

std::vector<finding_t> findings_of(const converted_t &conversion,
                                   const conversion_request_t &request, const std::string &file,
                                   exceptions_t &agreed, bool mask) {
    std::vector<finding_t> findings = audit(conversion, false);
    agreed.mark(file, findings);
    mend_findings(findings, conversion, request);
    std::erase_if(findings,
                  [](const finding_t &f) { return f.kind == &finding_code_t("IC090").kind(); });
    if (mask)
        mask_findings(findings, conversion);
    return findings;
}

void tell_findings(const std::string &name, const std::vector<finding_t> &findings) {
    const finding_count_t count = count_findings(findings);
    if (count.errors + count.warnings + count.agreed == 0)
        return;
    message(name + ": " + count_text(count) +
            " (infraconvert explain CODE tells about one, infraconvert audit shows all)");
    message_lines(findings_text(findings, severity_t::warning));
}

std::string refused_codes(const std::vector<finding_t> &findings) {
    std::set<std::string> told;
    std::string refused;
    for (const finding_t &finding : findings) {
        if (is_open_error(finding) && told.insert(finding.kind->code).second)
            (refused += refused.empty() ? "" : ",") += finding.kind->code;
    }
    return refused;
}

} // namespace infraconvert
