#include "reports/mask.h"

#include "base/secrets.h"

namespace infraconvert {

converted_t shown_conversion(converted_t conversion, bool mask) {
    if (!mask)
        return conversion;
    conversion.original = std::make_shared<const std::string>(masked_lines(*conversion.original));
    conversion.result = std::make_shared<const std::string>(masked_lines(*conversion.result));
    for (step_t &step : conversion.steps) {
        if (!step.failure)
            continue;
        step.failure->reason = masked(step.failure->reason);
        step.failure->log_line = masked(step.failure->log_line);
    }
    return conversion;
}

void mask_findings(std::vector<finding_t> &findings) {
    for (finding_t &finding : findings) {
        finding.detail = masked(finding.detail);
        for (auto *lines : {&finding.before, &finding.after}) {
            for (evidence_t &line : *lines)
                line.text = masked(line.text);
        }
    }
}

} // namespace infraconvert
