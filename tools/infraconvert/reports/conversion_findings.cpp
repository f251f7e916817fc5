#include "reports/conversion_findings.h"

#include "audit/audit.h"
#include "audit/fixes.h"
#include "audit/masked_findings.h"
#include "base/errors.h"
#include "base/messages.h"
#include "base/suggest.h"
#include "reports/findings_text.h"

#include <algorithm>
#include <set>

namespace infraconvert {

std::vector<finding_t> findings_of(const converted_t &conversion,
                                   const conversion_request_t &request, bool mask) {
    std::vector<finding_t> findings = audit(conversion, false);
    mend_findings(findings, conversion, request);
    std::erase_if(findings,
                  [](const finding_t &f) { return f.kind == &finding_code_t("IC090").kind(); });
    if (mask)
        mask_findings(findings, conversion);
    return findings;
}

void tell_findings(const std::string &name, const std::vector<finding_t> &findings) {
    const finding_count_t count = count_findings(findings);
    if (count.errors + count.warnings == 0)
        return;
    message(name + ": " + count_text(count) +
            " (infraconvert explain CODE tells about one, infraconvert audit shows all)");
    message_lines(findings_text(findings, severity_t::warning));
}

std::string refused_codes(const std::vector<finding_t> &findings,
                          const std::vector<std::string> &accepted) {
    std::set<std::string> fine;
    for (const std::string &code : accepted) {
        const finding_kind_t *kind = finding_kind_named(code);
        if (!kind && retired_kind_named(code))
            continue;
        if (!kind) {
            std::vector<std::string> known;
            for (const finding_kind_t &each : finding_kinds())
                known.emplace_back(each.code);
            throw usage_error_t("unknown finding '" + code + "'" + suggestion(code, known));
        }
        fine.insert(kind->code);
    }
    std::string refused;
    for (const finding_t &finding : findings) {
        if (finding.kind->severity == severity_t::error && fine.insert(finding.kind->code).second)
            (refused += refused.empty() ? "" : ",") += finding.kind->code;
    }
    return refused;
}

} // namespace infraconvert
