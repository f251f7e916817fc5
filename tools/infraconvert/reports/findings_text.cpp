#include "reports/findings_text.h"

#include "base/messages.h"
#include "conversion/route.h"

#include <algorithm>
#include <map>
#include <set>

namespace infraconvert {

namespace {

constexpr size_t shown_of_a_kind = 12; // more of one kind are only counted
constexpr size_t shown_lines = 8;      // of one text; more are only counted
constexpr size_t shown_fix_lines = 24;
constexpr size_t code_width = 7, severity_width = 9;

std::string line_text(char mark, const evidence_t &line) {
    const std::string number = std::to_string(line.number);
    return "    " + std::string(1, mark) + ' ' +
           std::string(6 - std::min<size_t>(6, number.size()), ' ') + number + "  " + line.text +
           '\n';
}

std::string lines_text(char mark, const std::vector<evidence_t> &lines) {
    std::string text;
    for (size_t i = 0; i < std::min(lines.size(), shown_lines); i++)
        text += line_text(mark, lines[i]);
    if (lines.size() > shown_lines)
        text += "    " + std::string(1, mark) + "         and " +
                std::to_string(lines.size() - shown_lines) + " more lines\n";
    return text;
}

std::string finding_text(const finding_t &finding) {
    std::string text;
    const std::string hop = finding.hop.empty() ? "" : "from " + route_text(finding.hop) + ":";
    const std::string blank = hop.empty() || finding.detail.empty() ? "" : " ";
    if (!hop.empty() || !finding.detail.empty())
        text += "    " + wrapped(hop + blank + finding.detail, 4) + '\n';
    return text + lines_text('-', finding.before) + lines_text('+', finding.after);
}

constexpr const char *fix_times[] = {
    "edit the original before the conversion:", "type on the switch after the conversion:",
    "type on the switch after the rollback:"};
const char *in_words(fix_time_t time) { return fix_times[static_cast<size_t>(time)]; }

std::string fix_lines_text(const std::string &time, const std::vector<std::string> &lines) {
    if (lines.empty())
        return "";
    std::string text = "    > " + time + '\n';
    for (size_t i = 0; i < std::min(lines.size(), shown_fix_lines); i++)
        text += "        " + lines[i] + '\n';
    if (lines.size() > shown_fix_lines)
        text += "        and " + std::to_string(lines.size() - shown_fix_lines) +
                " more lines (infraconvert audit --fixes DIR writes them all)\n";
    return text;
}

std::string by_hand_text(const finding_t &finding) {
    if (finding.by_hand.empty())
        return "";
    std::string text = "    > " + wrapped("By hand: " + finding.by_hand + ".", 6) + '\n';
    const char *word = "either ";
    for (const fix_text_t &choice : finding.choices) {
        text += fix_lines_text(std::string(word) + in_words(choice.time), choice.lines);
        word = "or ";
    }
    return text;
}

// The fixes of findings of one kind, each once, and why others have none.
std::string fixes_text(const std::vector<finding_t> &findings, size_t first, size_t next) {
    std::map<fix_time_t, std::vector<std::string>> lines;
    std::set<std::vector<std::string>> told;
    std::set<std::string> reasons;
    std::string by_hand;
    for (size_t i = first; i < next; i++) {
        for (const fix_text_t &fix : findings[i].fixes) {
            std::vector<std::string> &here = lines[fix.time];
            if (told.insert(fix.lines).second)
                here.insert(here.end(), fix.lines.begin(), fix.lines.end());
        }
        if (const std::string reason = by_hand_text(findings[i]); reasons.insert(reason).second)
            by_hand += reason;
    }
    std::string text;
    for (const auto &[time, typed] : lines)
        text += fix_lines_text(in_words(time), typed);
    return text + by_hand;
}

// Why those of a kind were agreed on, each reason once.
std::string agreements_text(const std::vector<finding_t> &findings, size_t first, size_t next) {
    std::set<std::string> told;
    std::string text;
    for (size_t i = first; i < next; i++) {
        const auto &[reason, until] = *findings[i].accepted;
        const std::string words = "Agreed" + (reason.empty() ? "" : ": " + reason) +
                                  (until.empty() ? "" : " (until " + until + ")") + ".";
        if (told.insert(words).second)
            text += "    > " + wrapped(words, 6) + '\n';
    }
    return text;
}

// Findings in the order in which they are shown: what was agreed on comes last.
std::string groups_text(const std::vector<finding_t> &findings, severity_t least, bool agreed) {
    std::string text;
    for (size_t first = 0, next; first < findings.size(); first = next) {
        const finding_kind_t *kind = findings[first].kind;
        for (next = first; next < findings.size() && findings[next].kind == kind;)
            next++;
        if (kind->severity > least)
            continue;
        text += "  " + column(agreed ? "agreed" : severity_name(kind->severity), severity_width) +
                column(kind->code, code_width) + kind->title + '\n';
        for (size_t i = first; i < std::min(next, first + shown_of_a_kind); i++)
            text += finding_text(findings[i]);
        if (next - first > shown_of_a_kind)
            text += "    and " + std::to_string(next - first - shown_of_a_kind) + " more\n";
        if (agreed) {
            text += agreements_text(findings, first, next);
            continue;
        }
        const std::string fixes = fixes_text(findings, first, next);
        text += fixes;
        if (fixes.empty() && kind->severity != severity_t::note)
            text += "    > " + wrapped(kind->advice, 6) + '\n';
    }
    return text;
}

} // namespace

std::string findings_text(const std::vector<finding_t> &findings, severity_t least) {
    std::vector<finding_t> open, agreed;
    for (const finding_t &finding : findings)
        (finding.accepted ? agreed : open).push_back(finding);
    return groups_text(open, least, false) + groups_text(agreed, least, true);
}

std::string finding_details(const finding_kind_t &kind) {
    return std::string(kind.code) + " (" + severity_name(kind.severity) + ") " + kind.title +
           "\n\nWhat it means:\n  " + wrapped(kind.explanation, 2) + "\n\nWhat to do:\n  " +
           wrapped(kind.advice, 2) + '\n';
}

std::string finding_details(const retired_kind_t &kind) {
    return std::string(kind.code) + " (not found any more) " + kind.title + "\n\nWhy not:\n  " +
           wrapped(kind.reason, 2) + '\n';
}

std::string finding_list() {
    std::string text;
    for (const finding_kind_t &kind : finding_kinds())
        text += column(kind.code, code_width) +
                column(severity_name(kind.severity), severity_width) + kind.title + '\n';
    return text;
}

} // namespace infraconvert
