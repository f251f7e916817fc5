#include "reports/totals.h"

#include <algorithm>
#include <tuple>

namespace infraconvert {

namespace {

constexpr size_t most_worst = 64;

std::vector<std::string> open_codes(const audited_t &audited) {
    std::vector<std::string> codes;
    for (const finding_t &finding : audited.findings) {
        if (is_open_error(finding) &&
            std::find(codes.begin(), codes.end(), finding.kind->code) == codes.end())
            codes.emplace_back(finding.kind->code);
    }
    return codes;
}

} // namespace

bool alike_t::is_worse_than(const alike_t &other) const {
    const auto weight = [](const alike_t &one) {
        const auto &[errors, warnings, notes, agreed] = one.findings;
        const bool trouble = one.state == state_t::unusable || one.state == state_t::failed;
        return std::tuple(trouble ? 2 - static_cast<int>(one.state) : 0, errors, warnings, notes);
    };
    return weight(*this) > weight(other);
}

void totals_t::add(const audited_t &audited) {
    count++;
    states[audited.state]++;
    blocked += audited.is_blocked();
    const finding_count_t found = count_findings(audited.findings);
    agreed += found.agreed > 0;
    warned += found.warnings > 0;
    if (!audited.verdict.empty())
        verdicts[audited.verdict]++;
    add_codes(audited);
    if (!audited.needs_hands()) {
        likenesses[audited.alike]++;
        return;
    }
    need_hands++;
    mendable += audited.is_mendable();
    add_to_worst(audited);
}

void totals_t::add_codes(const audited_t &audited) {
    struct seen_t {
        bool open = false, mendable = true;
    };
    std::map<std::string, seen_t> seen; // in this configuration
    for (const finding_t &finding : audited.findings) {
        code_count_t &code = codes[finding.kind->code];
        seen_t &here = seen[finding.kind->code];
        code.kind = finding.kind;
        code.findings++;
        if (finding.accepted)
            continue;
        if (code.open++ == 0) {
            code.example = audited.file;
            code.detail = finding.detail;
        }
        here.open = true;
        here.mendable = here.mendable && !finding.fixes.empty() && finding.by_hand.empty();
    }
    for (const auto &[name, here] : seen) {
        codes[name].files++;
        codes[name].open_files += here.open;
        codes[name].mendable_files += here.open && here.mendable;
    }
}

void totals_t::add_to_worst(const audited_t &audited) {
    const auto known = std::find_if(worst.begin(), worst.end(), [&](const alike_t &one) {
        return one.likeness == audited.alike;
    });
    if (known != worst.end()) {
        known->others++;
        return;
    }
    alike_t one = {.file = audited.file,
                   .problem = audited.problem,
                   .likeness = audited.alike,
                   .state = audited.state,
                   .blocked = audited.is_blocked(),
                   .findings = count_findings(audited.findings),
                   .codes = open_codes(audited)};
    // Behind those that are as bad: what falls off the end stays off, whatever comes later.
    const auto place = std::find_if(worst.begin(), worst.end(),
                                    [&](const alike_t &other) { return one.is_worse_than(other); });
    worst.insert(place, std::move(one));
    if (worst.size() > most_worst)
        worst.pop_back();
}

size_t totals_t::most_alike() const {
    size_t most = 0;
    for (const auto &[likeness, number] : likenesses)
        most = std::max(most, number);
    return most;
}

} // namespace infraconvert
