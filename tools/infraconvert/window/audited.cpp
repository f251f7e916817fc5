#include "window/audited.h"

#include "base/digest.h"
#include "base/errors.h"
#include "base/quoting.h"

#include <algorithm>
#include <iterator>

namespace infraconvert {

namespace {

constexpr const char *state_names[] = {"unusable", "failed", "changed", "unchanged", "checked"};

} // namespace

const char *state_name(state_t state) { return state_names[static_cast<size_t>(state)]; }

std::optional<state_t> state_named(std::string_view name) {
    const auto *found = std::find(std::begin(state_names), std::end(state_names), name);
    if (found == std::end(state_names))
        return std::nullopt;
    return static_cast<state_t>(found - std::begin(state_names));
}

bool audited_t::is_blocked() const {
    return state == state_t::unusable && problem_status == exit_trouble;
}

bool audited_t::needs_hands() const {
    return state == state_t::unusable || state == state_t::failed ||
           std::any_of(findings.begin(), findings.end(), is_open_error);
}

bool audited_t::is_mendable() const {
    return state != state_t::unusable &&
           std::all_of(findings.begin(), findings.end(), [](const finding_t &finding) {
               return !is_open_error(finding) ||
                      (!finding.fixes.empty() && finding.by_hand.empty());
           });
}

int audited_t::exit_status(std::optional<severity_t> least) const {
    if (state == state_t::unusable)
        return problem_status;
    if (state == state_t::failed)
        return exit_failed;
    const bool found = std::any_of(findings.begin(), findings.end(), [&](const finding_t &f) {
        return least && !f.accepted && f.kind->severity <= *least;
    });
    return found ? exit_findings : exit_done;
}

std::string problem_in_words(const std::string &problem, int exit_status) {
    return problem + (exit_status == exit_trouble ? "; another try may succeed" : "");
}

std::string likeness_of(const audited_t &audited) {
    constexpr size_t enough = 12; // hexadecimal digits, for as many as there can be
    std::string said = state_name(audited.state);
    const auto say = [&](std::string_view words) { (said += '\n') += words; };
    say(without_name(audited.file, audited.problem));
    say(audited.verdict);
    for (const std::string &release : audited.route)
        say(release);
    for (const finding_t &finding : audited.findings) {
        say(finding.kind->code);
        say(finding.accepted ? "agreed" : "");
        say(finding.detail);
        for (const auto *lines : {&finding.before, &finding.after}) {
            for (const evidence_t &line : *lines)
                say(line.text);
        }
    }
    if (audited.findings.empty()) {
        for (const std::string &service : audited.services)
            say(service);
    }
    return sha256(said).substr(0, enough);
}

} // namespace infraconvert
