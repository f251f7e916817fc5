#include "audit/audit.h"

#include "audit/checks.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace infraconvert {

namespace {

using check_t = void (*)(audit_t &);

constexpr check_t comparisons[] = {
    check_outside_lines, check_spelling, check_vlans,   check_fabric_extenders,
    check_references,    check_maps,     check_actions, check_attachments,
    check_mtu,           check_coverage,
};

std::vector<evidence_t> evidence(const document_t &document, const audit_t::numbers_t &numbers) {
    std::vector<evidence_t> lines;
    for (const size_t number : numbers)
        lines.push_back({number + 1, std::string(without_newline(document.lines[number]))});
    return lines;
}

size_t first_line(const finding_t &finding) {
    if (!finding.before.empty())
        return finding.before[0].number;
    return finding.after.empty() ? 0 : finding.after[0].number;
}

bool stands_before(const finding_t &a, const finding_t &b) {
    if (a.kind->severity != b.kind->severity)
        return a.kind->severity < b.kind->severity;
    const int codes = strcmp(a.kind->code, b.kind->code);
    return codes < 0 || (codes == 0 && first_line(a) < first_line(b));
}

} // namespace

release_numbers_t parse_release(const std::string &text) {
    release_numbers_t r = {};
    sscanf(text.c_str(), "%d.%d(%d)", &r[0], &r[1], &r[2]);
    const size_t k = text.find('K');
    if (k != text.npos)
        sscanf(text.c_str() + k, "K%d(%d)", &r[3], &r[4]);
    return r;
}

audit_t::audit_t(const converted_t &c)
    : conversion(c), from(parse_release(c.releases.from)), to(parse_release(c.releases.to)),
      before(*c.original), after(*c.result), qos_before(read_qos(before)),
      qos_after(read_qos(after)) {}

bool audit_t::ran(const std::string &service) const {
    return std::any_of(conversion.steps.begin(), conversion.steps.end(), [&](const step_t &step) {
        return step.service->name == service && !step.routing.rules.empty() && !step.failure;
    });
}

void audit_t::add(finding_code_t code, const std::string &detail, const numbers_t &before_lines,
                  const numbers_t &after_lines) {
    findings.push_back(
        {&code.kind(), detail, evidence(before, before_lines), evidence(after, after_lines)});
}

std::vector<finding_t> audit(const converted_t &conversion, bool thorough) {
    audit_t audit(conversion);
    check_failures(audit);
    check_traps(audit);
    if (thorough)
        check_version_line(audit);
    // A conversion that failed as a whole leaves nothing to compare.
    if (!conversion.failed() || conversion.changes()) {
        for (const check_t check : comparisons)
            check(audit);
        if (thorough)
            check_second_run(audit);
    }
    std::stable_sort(audit.findings.begin(), audit.findings.end(), stands_before);
    return audit.findings;
}

} // namespace infraconvert
