#include "audit/masked_findings.h"

#include "conversion/configuration.h"
#include "secrets/masked_text.h"

namespace infraconvert {

namespace {

// Each line as the masked text has it: it alone tells what shows of it.
void mask_lines(std::vector<evidence_t> &evidence, const lines_t &masked) {
    for (evidence_t &line : evidence) {
        const bool known = line.number > 0 && line.number <= masked.size();
        line.text = known ? without_newline(masked[line.number - 1]) : masked_mark;
    }
}

} // namespace

void mask_findings(std::vector<finding_t> &findings, const converted_t &conversion) {
    const std::string original = masked_text(*conversion.original);
    const std::string result = masked_text(*conversion.result);
    const lines_t before = split_lines(original), after = split_lines(result);
    const mask_t mask = mask_of(conversion);
    for (finding_t &finding : findings) {
        finding.detail = mask.message(finding.detail);
        mask_lines(finding.before, before);
        mask_lines(finding.after, after);
    }
}

} // namespace infraconvert
