#include "audit/audit.h"

#include "base/lines.h"
#include "meaning/compare.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>
#include <utility>

namespace infraconvert {

namespace {

using meaning::difference_t;

// Both texts of a judgement, by their lines.
class texts_t {
  public:
    texts_t(std::string_view original, std::string_view result)
        : before(split_lines(original)), after(split_lines(result)), stanzas_before(before),
          stanzas_after(after) {}

    finding_t finding(const difference_t &difference) const {
        finding_t finding = {&difference.code.kind(), difference.words,
                             evidence(before, difference.before),
                             evidence(after, difference.after)};
        finding.place = place_of(finding, {stanzas_before, before}, {stanzas_after, after});
        return finding;
    }

  private:
    static std::vector<evidence_t> evidence(const lines_t &lines,
                                            const std::vector<uint32_t> &numbers) {
        std::vector<evidence_t> shown;
        shown.reserve(numbers.size());
        for (const uint32_t number : numbers)
            shown.push_back({number, std::string(without_newline(lines[number - 1]))});
        return shown;
    }

    const lines_t before, after;
    const stanzas_t stanzas_before, stanzas_after;
};

bool stands_before(const finding_t &a, const finding_t &b) {
    if (a.kind->severity != b.kind->severity)
        return a.kind->severity < b.kind->severity;
    return strcmp(a.kind->code, b.kind->code) < 0;
}

std::vector<finding_t> in_order(std::vector<finding_t> findings) {
    std::stable_sort(findings.begin(), findings.end(), stands_before);
    return findings;
}

void append(std::vector<finding_t> &findings, const texts_t &texts,
            const differences_t &differences) {
    for (const difference_t &difference : differences)
        findings.push_back(texts.finding(difference));
}

// ---- what a conversion has to tell besides

std::string lines_in_words(const converted_t &conversion, const step_t &step) {
    const lines_t lines = split_lines(conversion.given(step));
    std::string words;
    for (const size_t number : step.failure->lines)
        words += "; \"" + std::string(without_newline(lines[number - 1])) + "\" by then";
    return words;
}

void tell_failures(const converted_t &conversion, const texts_t &texts,
                   std::vector<finding_t> &findings) {
    for (const step_t &step : conversion.steps) {
        if (!step.failure)
            continue;
        const std::string words = std::string(step.service->name) + ": " + step.failure->reason;
        std::vector<uint32_t> lines;
        for (const size_t number : step.failure->lines)
            lines.push_back(static_cast<uint32_t>(number));
        // Behind the first hop the lines are those of a text that nobody has.
        const bool shows = step.hop == 0;
        findings.push_back(texts.finding({"IC090",
                                          shows ? words : words + lines_in_words(conversion, step),
                                          {},
                                          shows ? lines : std::vector<uint32_t>(),
                                          {}}));
        if (conversion.has_stops()) {
            const auto &[from, to] = hop_of(conversion.route, step.hop);
            findings.back().hop = {from, to};
        }
    }
}

void tell_version_line(const converted_t &conversion, const texts_t &texts,
                       std::vector<finding_t> &findings) {
    if (const uint32_t line =
            meaning::other_version_line(*conversion.original, conversion.route.front()))
        findings.push_back(texts.finding({"IC064", "", {}, {line}, {}}));
}

// What stands against a conversion that failed: all at once, for a converter stops at the first.
differences_t obstacles(const converted_t &conversion) {
    const std::string &from = conversion.route.front(), &to = conversion.route.back();
    differences_t all = meaning::judge_form(*conversion.original, from);
    std::erase_if(all, [](const difference_t &d) { return d.severity() == severity_t::note; });
    const differences_t unsayable = meaning::unsayable(*conversion.original, from, to);
    all.insert(all.end(), unsayable.begin(), unsayable.end());
    return all;
}

differences_t compared(const meaning::original_t &original, const std::string &result,
                       const route_t &route) {
    return original.compare(result, std::vector<std::string_view>(route.begin(), route.end()));
}

// What makes two findings the same one behind different hops. Line numbers of the result move, and
// a finding may name the release that reads it.
using likeness_t = std::pair<std::string, std::string>;
likeness_t likeness(const std::string &code, std::string words, const std::string &release) {
    for (size_t at; (at = words.find(release)) != words.npos;)
        words.erase(at, release.size());
    return {code, std::move(words)};
}

std::set<likeness_t> likenesses(const differences_t &differences, const std::string &release) {
    std::set<likeness_t> all;
    for (const difference_t &difference : differences)
        all.insert(likeness(difference.code.name(), difference.words, release));
    return all;
}

std::vector<finding_t> compared_findings(const converted_t &conversion, const texts_t &texts) {
    const meaning::original_t original(*conversion.original, conversion.route.front());
    std::vector<finding_t> findings;
    append(findings, texts, compared(original, *conversion.result, conversion.route));
    if (conversion.has_stops())
        tell_hops(findings, conversion.route, [&](size_t hops) {
            return compared(original, *conversion.stages[hops],
                            beginning_of(conversion.route, hops));
        });
    return findings;
}

std::vector<finding_t> obstacle_findings(const converted_t &conversion, const texts_t &texts) {
    std::vector<finding_t> findings;
    append(findings, texts, obstacles(conversion));
    return findings;
}

} // namespace

std::vector<finding_t> audit(const converted_t &conversion, bool thorough) {
    const texts_t texts(*conversion.original, *conversion.result);
    std::vector<finding_t> findings;
    tell_failures(conversion, texts, findings);
    if (thorough)
        tell_version_line(conversion, texts, findings);
    // A conversion that failed as a whole leaves nothing to compare.
    const bool compares = !conversion.failed() || conversion.changes();
    std::vector<finding_t> judged =
        compares ? compared_findings(conversion, texts) : obstacle_findings(conversion, texts);
    findings.insert(findings.end(), std::make_move_iterator(judged.begin()),
                    std::make_move_iterator(judged.end()));
    return in_order(findings);
}

std::vector<finding_t> findings_from(const std::string &original, const std::string &result,
                                     const differences_t &differences) {
    std::vector<finding_t> findings;
    append(findings, {original, result}, differences);
    return in_order(findings);
}

std::vector<finding_t> judge(const std::string &original, const std::string &result,
                             const route_t &route) {
    return findings_from(original, result, compared({original, route.front()}, result, route));
}

void tell_hops(std::vector<finding_t> &findings, const route_t &route,
               const std::function<differences_t(size_t hops)> &behind) {
    std::vector<finding_t *> open; // so at every hop looked at so far, from the last one on
    for (finding_t &finding : findings) {
        finding.hop = {route[route.size() - 2], route.back()};
        open.push_back(&finding);
    }
    for (size_t hop = hops_of(route) - 1; hop > 0 && !open.empty(); hop--) {
        const auto known = likenesses(behind(hop), route[hop]);
        std::erase_if(open, [&](const finding_t *f) {
            return !known.contains(likeness(f->kind->code, f->detail, route.back()));
        });
        for (finding_t *finding : open)
            finding->hop = {route[hop - 1], route[hop]};
    }
}

std::vector<finding_t> judge_form_of(const std::string &text, const std::string &release) {
    std::vector<finding_t> findings;
    append(findings, {text, text}, meaning::judge_form(text, release));
    return in_order(findings);
}

} // namespace infraconvert
