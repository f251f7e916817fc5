#include "reports/ways_text.h"

#include "base/messages.h"
#include "base/quoting.h"
#include "conversion/border_releases.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace infraconvert {

namespace {

constexpr size_t shown_alike = 3;    // routes with the same bytes; more are only counted
constexpr size_t shown_choices = 12; // in the table of many configurations

// ---- borders

// "4.1(2) and older", "4.1(1) to 4.1(4)", "5.0(1) and newer": releases that follow one another
// among the border releases.
std::string range_text(const std::vector<std::string> &releases) {
    if (releases.front() == *std::begin(border_releases))
        return releases.back() + " and older";
    if (releases.back() == *std::rbegin(border_releases))
        return releases.front() + " and newer";
    return releases.front() + (releases.size() == 1 ? "" : " ... " + releases.back());
}

// "up to it, from 4.1(2) and older"; where rules end, "up to it no more"
std::string place_text(const border_change_t &change) {
    const std::string end =
        std::string(change.up ? "up " : "down ") + (change.to ? "to it" : "from it");
    if (change.others.empty())
        return end + " no more";
    return end + (change.to ? ", from " : ", to ") + range_text(change.others);
}

bool is_chosen(const border_change_t &change, const std::vector<const service_t *> &services) {
    return std::find(services.begin(), services.end(), change.service) != services.end();
}

// Rules that change in the same way are one line.
std::vector<std::string> change_lines(const border_t &border,
                                      const std::vector<const service_t *> &services) {
    std::vector<std::pair<std::string, std::string>> rules_of;
    for (const border_change_t &change : border.changes) {
        if (!is_chosen(change, services))
            continue;
        const std::string place = place_text(change);
        const auto known = std::find_if(rules_of.begin(), rules_of.end(),
                                        [&](const auto &each) { return each.first == place; });
        if (known == rules_of.end())
            rules_of.emplace_back(place, change.rule->id);
        else
            known->second += std::string(", ") + change.rule->id;
    }
    std::vector<std::string> lines;
    for (const auto &[place, rules] : rules_of)
        lines.push_back(place + ": " + rules);
    return lines;
}

// ---- ways

std::string alike_text(const way_t &way) {
    const size_t others = way.routes.size() - 1;
    std::string text;
    for (size_t i = 1; i <= std::min(others, shown_alike); i++)
        text +=
            (i > 1 ? "; " : "") + stops_text({way.routes[i].begin() + 1, way.routes[i].end() - 1});
    if (others > shown_alike)
        text += "; and " + std::to_string(others - shown_alike) + " more";
    return others == 0 ? "" : "   the same bytes " + wrapped(text, 3) + '\n';
}

// Findings of one code at one hop are one line.
std::string losses_text(const way_t &way) {
    std::map<std::pair<std::vector<std::string>, const finding_kind_t *>, size_t> counts;
    std::vector<const finding_t *> firsts;
    for (const finding_t &finding : way.findings) {
        if (finding.kind->severity != severity_t::note &&
            counts[{finding.hop, finding.kind}]++ == 0)
            firsts.push_back(&finding);
    }
    std::string text;
    for (const finding_t *finding : firsts) {
        const size_t count = counts[{finding->hop, finding->kind}];
        text += "     " + column(severity_name(finding->kind->severity), 9) +
                column(finding->kind->code, 7) + "from " + route_text(finding->hop) + ": " +
                finding->kind->title + (count > 1 ? " (" + std::to_string(count) + " times)" : "") +
                '\n';
    }
    return text;
}

std::string back_text(const way_t &way) {
    if (!way.back_failure.empty())
        return "the way back fails: " + way.back_failure;
    if (way.left_behind.empty())
        return "the way back restores everything";
    std::string codes;
    for (const finding_t &finding : way.left_behind) {
        if (codes.find(finding.kind->code) == codes.npos)
            codes += (codes.empty() ? "" : ", ") + std::string(finding.kind->code);
    }
    return "the way back leaves " + counted(way.left_behind.size(), "error") + " (" + codes + ")";
}

std::string lost_text(const way_t &way) {
    return way.lost == 0 ? "nothing is lost"
                         : std::to_string(way.lost) +
                               (way.lost == 1 ? " effect or line" : " effects or lines") + " lost";
}

std::string way_text(size_t number, const way_t &way) {
    std::string text = column(std::to_string(number) + '.', 3) + route_text(way.routes.front()) +
                       '\n' + alike_text(way);
    if (way.fails())
        return text + "   fails from " + route_text(way.failed_hop) + ": " +
               wrapped(way.failure, 3) + '\n';
    text += "   " + lost_text(way) + (way.as_direct ? "" : ", other effects than directly") + "; " +
            back_text(way) + '\n' + losses_text(way);
    for (const std::string &words : way.unexplained)
        text += "     " + wrapped("unlike directly, without a finding: " + words, 5) + '\n';
    return text;
}

// ---- many configurations

std::string letter(size_t number) { return {static_cast<char>('A' + number)}; }

std::string cell(const way_t &way) {
    if (way.fails())
        return "x";
    return std::to_string(way.lost);
}

constexpr size_t letter_width = 5, number_width = 6;

std::string choice_line(size_t number, const choice_t &choice) {
    const size_t others = choice.stops.size() - 1;
    std::string line = "  " + column(letter(number), letter_width);
    for (const size_t figure : {choice.failing, choice.losing, choice.lost, choice.best})
        line += column(std::to_string(figure), number_width);
    return line + choice.name() + (others > 0 ? ", and " + std::to_string(others) + " alike" : "") +
           '\n';
}

std::string cells(const traveller_result_t &result, const std::vector<choice_t> &choices,
                  size_t shown) {
    std::string line = "  ";
    for (size_t i = 0; i < shown; i++)
        line += column(cell(result.through(choices[i].stops.front())), letter_width);
    return line + column(result.route.front(), 13);
}

// Configurations to which the same happens are one line, in the order of the first of each.
std::string results_table(const std::vector<traveller_result_t> &results,
                          const std::vector<choice_t> &choices, size_t shown) {
    std::string text = "\n  ";
    for (size_t i = 0; i < shown; i++)
        text += column(letter(i), letter_width);
    text += column("from", 13) + "configurations\n";
    std::vector<std::pair<std::string, std::vector<std::string>>> lines;
    std::map<std::string, size_t> known;
    for (const traveller_result_t &result : results) {
        if (result.ways.empty())
            continue;
        const std::string line = cells(result, choices, shown);
        const auto [entry, is_new] = known.try_emplace(line, lines.size());
        if (is_new)
            lines.push_back({line, {}});
        lines[entry->second].second.push_back(quoted_name(result.file));
    }
    for (const auto &[line, names] : lines) {
        text += line + (names.size() > 1 ? std::to_string(names.size()) + ": " : "") + names[0];
        for (size_t i = 1; i < std::min(names.size(), shown_alike); i++)
            text += ", " + names[i];
        if (names.size() > shown_alike)
            text += " and " + std::to_string(names.size() - shown_alike) + " more";
        text += '\n';
    }
    return text;
}

} // namespace

std::string borders_text(const std::vector<const service_t *> &services) {
    constexpr size_t release_width = 14;
    std::string text = column("release", release_width) + "what changes there\n", legend;
    for (const border_t &border : borders()) {
        std::vector<std::string> lines = change_lines(border, services);
        if (!border.within.empty())
            lines.push_back(border.within);
        for (size_t i = 0; i < lines.size(); i++)
            text += column(i == 0 ? border.release : "", release_width) +
                    wrapped(lines[i], release_width) + '\n';
    }
    for (const service_t *service : services) {
        for (const engine::rule_t &rule : service->rules)
            legend +=
                column(rule.id, release_width) +
                wrapped(std::string(service->title) + ": " + rule.plain_words, release_width) +
                '\n';
    }
    return text + '\n' + legend;
}

std::string ways_text(const traveller_result_t &result) {
    const route_t pair = {result.route.front(), result.route.back()};
    std::string text = quoted_name(result.file) + ", " + route_text(pair) + ": " +
                       counted(result.routes, "route") + ", " +
                       counted(result.ways.size(), "result") + ", the best first\n";
    for (size_t i = 0; i < result.ways.size(); i++)
        text += way_text(i + 1, result.ways[i]);
    return text;
}

std::string choices_text(const std::vector<traveller_result_t> &results,
                         const std::vector<choice_t> &choices) {
    const size_t shown = std::min(choices.size(), shown_choices);
    std::string text = "  " + column("", letter_width);
    for (const char *figure : {"fail", "lose", "lost", "best"})
        text += column(figure, number_width);
    text += "way\n";
    for (size_t i = 0; i < shown; i++)
        text += choice_line(i, choices[i]);
    if (shown < choices.size())
        text += "     and " + counted(choices.size() - shown, "way") +
                " with other results behind these (--json has all)\n";
    return text + results_table(results, choices, shown) +
           "\nfail, lose: configurations; lost, and below the letters: effects, and lines that "
           "errors are about;\nbest: configurations for which no way loses less; x: the way "
           "fails\n";
}

} // namespace infraconvert
