#include "reports/window_report.h"

#include "base/errors.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "reports/json_document.h"

#include <algorithm>
#include <map>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;
using line_t = window_report_t::line_t;

constexpr const char *verb_names[] = {"preview", "convert", "undo"};

// In the order in which they are counted.
constexpr struct {
    const char *words;
    standing_t standing;
    bool done;
} rows[] = {{"converted now", standing_t::converted, true},
            {"already converted", standing_t::converted, false},
            {"put back", standing_t::ready, true},
            {"ready", standing_t::ready, false},
            {"unchanged", standing_t::unchanged, false},
            {"refused", standing_t::refused, false},
            {"failed", standing_t::failed, false},
            {"torn", standing_t::torn, false},
            {"stale", standing_t::stale, false},
            {"unusable", standing_t::unusable, false},
            {"blocked", standing_t::blocked, false}};

constexpr const char *still_converted = "still converted", *nothing_to_undo = "nothing to undo";

// Whoever wants all names of very many takes the JSON.
constexpr size_t most_names = 12;

bool needs_hands(const line_t &line) { return !line.state.why.empty(); }

// Worst first, and then as in the plan.
std::vector<const line_t *> lines_that_need_hands(const std::vector<line_t> &lines) {
    std::vector<const line_t *> found;
    for (const line_t &line : lines) {
        if (needs_hands(line))
            found.push_back(&line);
    }
    std::stable_sort(found.begin(), found.end(), [](const line_t *one, const line_t *other) {
        return one->state.exit_status != other->state.exit_status &&
               worse(one->state.exit_status, other->state.exit_status) == one->state.exit_status;
    });
    return found;
}

// What a line is counted under. An undo has nothing to do with what the plan did not convert,
// whatever that is now.
const char *title_of(window_verb_t verb, const line_t &line) {
    const auto &[standing, done, why, status] = line.state;
    if (verb == window_verb_t::undo && !done && why.empty())
        return nothing_to_undo;
    if (verb == window_verb_t::undo && !done && standing == standing_t::converted)
        return still_converted;
    return std::find_if(std::begin(rows), std::end(rows),
                        [&](const auto &row) {
                            return row.standing == line.state.standing &&
                                   row.done == line.state.done;
                        })
        ->words;
}

// What is to be done; mending is no advice where all was mended that can be.
std::string hint_of(const window_report_t &report, standing_t standing) {
    const bool planned = !report.plan.empty();
    const std::string in_a_plan = planned ? ", when a plan is saved" : "";
    switch (standing) {
    case standing_t::refused:
        return "infraconvert audit shows them; " +
               std::string(report.mend == "all" ? "--accept agrees to what --mend leaves"
                                                : "--mend mends, --accept agrees") +
               in_a_plan;
    case standing_t::stale:
        return "look at them again, and save another plan for these";
    case standing_t::blocked:
        return "the machine was in the way; another try may succeed";
    default:
        return "";
    }
}

std::string count_line(const std::string &title, size_t count, const std::string &hint) {
    constexpr size_t width = 19, count_width = 6;
    const std::string number = std::to_string(count);
    return "  " + column(title, width) +
           (hint.empty() ? number : column(number, count_width) + hint) + '\n';
}

size_t mended_in(const std::vector<line_t> &lines) {
    return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), [](const line_t &line) {
        return line.planned.mended && (line.state.standing == standing_t::ready ||
                                       line.state.standing == standing_t::converted);
    }));
}

std::string counts_text(const window_report_t &report) {
    const bool undoes = report.verb == window_verb_t::undo;
    std::map<std::string, size_t> counts; // by title
    for (const line_t &line : report.lines)
        counts[title_of(report.verb, line)]++;
    std::string text;
    const auto tell = [&](const char *title, const std::string &hint) {
        if (const auto found = counts.find(title); found != counts.end())
            text += count_line(title, found->second, hint);
    };
    for (const auto &row : rows) {
        tell(row.words, undoes ? "" : hint_of(report, row.standing));
        const size_t mended =
            row.standing == standing_t::ready && !row.done && !undoes ? mended_in(report.lines) : 0;
        if (mended > 0)
            text += count_line("  mended of these", mended, "");
    }
    tell(still_converted, "");
    tell(nothing_to_undo, "");
    return text;
}

std::string names_text(const std::vector<const line_t *> &lines) {
    constexpr size_t indent = 4;
    std::string names;
    for (size_t i = 0; i < std::min(lines.size(), most_names); i++)
        names += (i > 0 ? ", " : "") + quoted_name(lines[i]->file);
    if (lines.size() > most_names)
        names += " and " + std::to_string(lines.size() - most_names) + " more, which --json names";
    return std::string(indent, ' ') + wrapped(names, indent) + '\n';
}

// Those of which the same is to be said stand together, where the first of them stands.
std::string hands_text(const std::vector<const line_t *> &lines) {
    std::vector<std::pair<std::string, std::vector<const line_t *>>> groups;
    std::map<std::string, size_t> places;
    for (const line_t *line : lines) {
        const std::string said = std::string(standing_name(line->state.standing)) + ": " +
                                 without_name(line->file, line->state.why);
        const auto [place, is_new] = places.emplace(said, groups.size());
        if (is_new)
            groups.push_back({said, {}});
        groups[place->second].second.push_back(line);
    }
    std::string text;
    for (const auto &[said, alike] : groups)
        text += "  " + visible(said) + '\n' + names_text(alike);
    return text;
}

json line_json(const line_t &line) {
    const planned_t &planned = line.planned;
    return {{"path", line.file},
            {"state", standing_name(line.state.standing)},
            {"done", line.state.done},
            {"why", or_null(line.state.why)},
            {"exit_status", line.state.exit_status},
            {"route", planned.route},
            {"rules", planned.rules},
            {"failed_services", planned.failed_services},
            {"errors", planned.findings.errors},
            {"warnings", planned.findings.warnings},
            {"notes", planned.findings.notes},
            {"agreed", planned.findings.agreed},
            {"refused", planned.refused},
            {"mended", planned.mended}};
}

} // namespace

// What would be lost stops nobody from looking.
int window_report_t::exit_status(bool tells_change) const {
    int status = exit_done;
    for (const line_t &line : lines) {
        const bool is_shown_only =
            verb == window_verb_t::preview && line.state.exit_status == exit_findings;
        status = worse(status, is_shown_only ? exit_done : line.state.exit_status);
        if (tells_change && line.state.standing == standing_t::ready)
            status = worse(status, exit_would_change);
    }
    return status;
}

std::string window_text(const window_report_t &report) {
    const auto hands = lines_that_need_hands(report.lines);
    const size_t all = report.lines.size();
    std::string text = (report.plan.empty() ? "" : quoted_name(report.plan) + ": ") +
                       counted(all, "configuration") + '\n' + counts_text(report);
    if (!hands.empty())
        text += std::to_string(hands.size()) + (hands.size() == 1 ? " needs" : " need") +
                " hands:\n" + hands_text(hands);
    return text;
}

std::string window_json(const window_report_t &report) {
    json document = document_of(verb_names[static_cast<size_t>(report.verb)]);
    document["plan"] = or_null(report.plan);
    document["configurations"] = json::array();
    for (const line_t &line : report.lines)
        document["configurations"].push_back(line_json(line));
    return printed(document);
}

} // namespace infraconvert
