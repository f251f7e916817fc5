#include "audit/fixes.h"

#include "audit/audit.h"
#include "base/diff.h"
#include "base/lines.h"

#include <algorithm>
#include <unordered_map>

namespace infraconvert {

namespace {

using mending::fix_place_t;
using mending::fix_t;
using mending::mended_t;

// What an edit changes, line by line.
void tell_edit(fix_text_t &text, const std::string &before, const std::string &after) {
    const lines_t old = split_lines(before), now = split_lines(after);
    bool changing = false;
    for (const script_line_t &line : difference(old, now)) {
        if (line.edit == line_edit_t::keep) {
            changing = false;
            continue;
        }
        if (!changing)
            text.replacements.push_back({line.before + 1, 0, ""});
        changing = true;
        replacement_t &replacement = text.replacements.back();
        if (line.edit == line_edit_t::remove) {
            text.lines.push_back("-" + std::string(without_newline(old[line.before])));
            replacement.removed++;
        } else {
            text.lines.push_back("+" + std::string(without_newline(now[line.after])));
            replacement.text += now[line.after];
        }
    }
}

fix_text_t text_of(const fix_t &fix, const std::string &original) {
    const bool before = fix.place == fix_place_t::before;
    fix_text_t text = {before ? fix_time_t::before : fix_time_t::after, {}, {}};
    if (before)
        tell_edit(text, original, fix.edited);
    else
        text.lines = lines_of(fix.commands);
    for (const meaning::difference_t &difference : fix.mends)
        text.restores.push_back(difference.words);
    return text;
}

bool has_rule(const service_t &service, const route_t &route) {
    for (size_t hop = 0; hop < hops_of(route); hop++) {
        if (!routing_of(service, hop_of(route, hop)).rules.empty())
            return true;
    }
    return false;
}

// Where a service with a rule was left out, what it would have done is no work for fixes.
bool runs_every_rule(const conversion_request_t &request) {
    const auto &chosen = request.services;
    return std::all_of(services().begin(), services().end(), [&](const service_t &service) {
        return std::find(chosen.begin(), chosen.end(), &service) != chosen.end() ||
               !has_rule(service, request.route);
    });
}

bool wants_lines(const finding_t &finding) { return mending::wants_lines(*finding.kind); }

bool is_wanted(const finding_t &finding) { return wants_lines(finding) && !finding.accepted; }

// Findings by what they tell.
class told_t {
  public:
    explicit told_t(std::vector<finding_t> &told) : findings(told) {
        for (finding_t &finding : findings)
            by_words.emplace(key(finding.kind->code, finding.detail), &finding);
    }

    // Words change when a part of a finding is mended before the rest; the code stays, and then it
    // is told of one that nothing was told of yet.
    template<typename visit_t> void visit(const meaning::difference_t &difference, visit_t visit) {
        const auto [first, end] =
            by_words.equal_range(key(difference.code.name(), difference.words));
        for (auto told = first; told != end; ++told)
            visit(*told->second);
        if (first != end)
            return;
        for (finding_t &finding : findings) {
            if (wants_lines(finding) && finding.kind == &difference.code.kind() &&
                finding.fixes.empty() && finding.by_hand.empty()) {
                visit(finding);
                return;
            }
        }
    }

  private:
    static std::string key(const char *code, const std::string &words) {
        return code + (' ' + words);
    }

    std::vector<finding_t> &findings;
    std::unordered_multimap<std::string, finding_t *> by_words;
};

void add_once(finding_t &finding, const fix_text_t &text) {
    const bool known = std::any_of(finding.fixes.begin(), finding.fixes.end(),
                                   [&](const fix_text_t &fix) { return fix.lines == text.lines; });
    if (!known)
        finding.fixes.push_back(text);
}

} // namespace

namespace {

std::string trimmed(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    return std::string(without_newline(line));
}

// Why a conversion failed, with the first line that its converter names: it is one of an edited
// text, which nobody has.
std::string refusal_of(const converted_t &conversion) {
    for (const step_t &step : conversion.steps) {
        if (!step.failure)
            continue;
        const lines_t lines = split_lines(conversion.given(step));
        std::string words = std::string(step.service->name) + ": " + step.failure->reason;
        if (!step.failure->lines.empty())
            words += "; \"" + trimmed(lines[step.failure->lines.front() - 1]) + '"';
        return words;
    }
    return "";
}

// A finding that no fix and no reason is about by itself.
void tell_of_all(finding_t &finding, const mended_t &mended, const std::string &original) {
    const auto is = [&](finding_code_t code) { return finding.kind == &code.kind(); };
    if (!mended.by_hand.empty())
        finding.by_hand = mended.by_hand.front().why;
    else if (!mended.fixes.empty())
        for (const fix_t &fix : mended.fixes)
            add_once(finding, text_of(fix, original));
    else if (is("IC091"))
        finding.by_hand = "the target release has no form for it";
    else
        finding.by_hand =
            "no edit that means the same was found with which it converts" +
            (is("IC090") && !mended.refusal.empty() ? "; the last one is refused: " + mended.refusal
                                                    : "");
}

} // namespace

mended_t mend_conversion(const converted_t &conversion, const conversion_request_t &request,
                         const std::set<std::string> &codes) {
    const std::vector<std::string_view> route(conversion.route.begin(), conversion.route.end());
    const bool failed = conversion.failed() && !request.keep_going;
    mending::mending_request_t wanted = {
        .original = *conversion.original, .result = std::nullopt, .route = route, .codes = codes};
    if (!failed)
        wanted.result = *conversion.result;
    wanted.convert = [&](const std::string &edited) -> mending::attempt_t {
        conversion_request_t again = request;
        again.text = std::make_shared<const std::string>(edited);
        again.wants_logs = false;
        again.log_directory.clear();
        const converted_t made = run_conversion(again);
        if (made.failed() && !request.keep_going)
            return {std::nullopt, refusal_of(made)};
        return {*made.result};
    };
    return mending::mend(wanted);
}

converted_t with_fixes(const conversion_request_t &request, const mended_t &mended) {
    conversion_request_t fixed = request;
    if (mended.original != *request.text)
        fixed.edited = std::make_shared<const std::string>(mended.original);
    fixed.typed = [&](const std::string &converted) {
        std::string text = converted;
        for (const fix_t &fix : mended.fixes)
            text = mending::applied(text, fix.commands);
        return text;
    };
    converted_t conversion = run_conversion(fixed);
    conversion.mended = true;
    return conversion;
}

void add_fixes(std::vector<finding_t> &findings, const mended_t &mended,
               const std::string &original) {
    told_t told(findings);
    // It takes all of them to bring through a conversion that failed.
    const bool failed = std::any_of(mended.fixes.begin(), mended.fixes.end(),
                                    [](const fix_t &fix) { return fix.mends.empty(); });
    for (const fix_t &fix : mended.fixes) {
        const fix_text_t text = text_of(fix, original);
        for (const meaning::difference_t &difference : fix.mends)
            told.visit(difference, [&](finding_t &finding) { add_once(finding, text); });
        if (!failed)
            continue;
        for (finding_t &finding : findings) {
            if (wants_lines(finding))
                add_once(finding, text);
        }
    }
    for (const mending::by_hand_t &left : mended.by_hand)
        told.visit(left.difference, [&](finding_t &finding) {
            finding.by_hand = left.why;
            for (const mending::commands_t &choice : left.choices)
                finding.choices.push_back(
                    {fix_time_t::after, lines_of(choice), {left.difference.words}});
        });
    for (finding_t &finding : findings) {
        if (wants_lines(finding) && finding.fixes.empty() && finding.by_hand.empty())
            tell_of_all(finding, mended, original);
    }
}

bool judged_result_t::loses() const {
    return std::any_of(findings.begin(), findings.end(), is_wanted);
}

const char *judged_result_t::verdict() const {
    if (!loses())
        return "reversible";
    return mended.by_hand.empty() ? "reversible with these lines" : "not reversible";
}

namespace {

bool is_there_and_back(const route_t &route) {
    return hops_of(route) > 1 && route.front() == route.back();
}

void type_after_rollback(std::vector<finding_t> &findings) {
    for (finding_t &finding : findings) {
        for (std::vector<fix_text_t> *fixes : {&finding.fixes, &finding.choices})
            for (fix_text_t &fix : *fixes)
                fix.time = fix_time_t::after_rollback;
    }
}

} // namespace

judged_result_t judge_with_fixes(const std::string &original, const std::string &result,
                                 const route_t &route) {
    judged_result_t judged = {judge(original, result, route), {}};
    const std::vector<std::string_view> releases(route.begin(), route.end());
    judged.mended = mending::mend({.original = original, .result = result, .route = releases});
    add_fixes(judged.findings, judged.mended, original);
    if (is_there_and_back(route))
        type_after_rollback(judged.findings);
    return judged;
}

mended_t mend_findings(std::vector<finding_t> &findings, const converted_t &conversion,
                       const conversion_request_t &request) {
    mended_t mended;
    mended.original = *conversion.original;
    mended.result = *conversion.result;
    if (runs_every_rule(request) && std::any_of(findings.begin(), findings.end(), is_wanted)) {
        mended = mend_conversion(conversion, request);
        add_fixes(findings, mended, *conversion.original);
    }
    return mended;
}

namespace {

// Nothing that types the file makes the choice.
std::string choices_in_comments(const mending::by_hand_t &left) {
    std::string text;
    for (const mending::commands_t &choice : left.choices) {
        text += text.empty() ? "! " + std::string(left.difference.code.name()) + ": " +
                                   left.difference.words + "\n! By hand: " + left.why + ". Either\n"
                             : "! or\n";
        for (const std::string &line : lines_of(choice))
            text += "!   " + line + '\n';
    }
    return text;
}

} // namespace

std::string lines_to_type(const mended_t &mended) {
    std::string text;
    for (const fix_t &fix : mended.fixes) {
        if (fix.place == fix_place_t::before)
            continue;
        for (const meaning::difference_t &difference : fix.mends)
            text += "! " + std::string(difference.code.name()) + ": " + difference.words + '\n';
        for (const std::string &line : lines_of(fix.commands))
            text += line + '\n';
    }
    for (const mending::by_hand_t &left : mended.by_hand)
        text += choices_in_comments(left);
    return text;
}

} // namespace infraconvert
