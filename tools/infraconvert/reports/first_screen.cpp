#include "reports/first_screen.h"

#include "base/messages.h"
#include "base/quoting.h"

#include <algorithm>

namespace infraconvert {

namespace {

constexpr size_t most_causes = 8, most_worst = 12, most_codes = 6;
constexpr size_t most_name = 44, most_detail = 180, most_problem = 80;
constexpr size_t title_width = 12, number_width = 7;

std::string right(size_t number, size_t width) {
    const std::string text = std::to_string(number);
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string about(const header_t &header, const totals_t &totals) {
    return counted(totals.count, "configuration") + ", " + route_text(header.route);
}

void join(std::string &list, const std::string &part) {
    if (!part.empty())
        list += (list.empty() ? "" : ", ") + part;
}

size_t number_of(const totals_t &totals, state_t state) {
    const auto found = totals.states.find(state);
    return found == totals.states.end() ? 0 : found->second;
}

// ---- totals

std::string row(const char *title, size_t number, const std::string &words) {
    constexpr size_t indent = 2 + title_width + number_width + 2;
    return "  " + column(title, title_width) + right(number, number_width) + "  " +
           wrapped(words, indent) + '\n';
}

std::string hands_words(const totals_t &totals) {
    const size_t unusable = number_of(totals, state_t::unusable);
    const size_t failed = number_of(totals, state_t::failed);
    const size_t others = totals.need_hands - unusable - failed;
    const bool converts = number_of(totals, state_t::checked) == 0;
    std::string words;
    if (unusable > totals.blocked)
        join(words, std::to_string(unusable - totals.blocked) + " unusable");
    if (totals.blocked > 0)
        join(words, std::to_string(totals.blocked) + " blocked (another try may succeed)");
    if (failed > 0)
        join(words, std::to_string(failed) + " failed");
    if (others > 0)
        join(words, std::to_string(others) + (converts ? " would lose something" : " with errors"));
    if (totals.mendable > 0)
        words += "; " + std::string(totals.verdicts.empty() ? "--mend mends " : "lines restore ") +
                 std::to_string(totals.mendable) + " of them whole";
    return words;
}

std::string rest_words(const totals_t &totals) {
    const bool converts = number_of(totals, state_t::checked) == 0;
    std::string words = !totals.verdicts.empty() ? "come back without loss"
                        : converts               ? "convert without loss"
                                                 : "without errors";
    if (const size_t alike = totals.most_alike(); alike > 1)
        words += alike == totals.count - totals.need_hands
                     ? ", all alike"
                     : ", " + std::to_string(alike) + " of them alike";
    return words;
}

std::vector<const code_count_t *> codes_of(const totals_t &totals, severity_t severity) {
    std::vector<const code_count_t *> found;
    for (const auto &[name, code] : totals.codes) {
        if (code.kind->severity == severity && code.open > 0)
            found.push_back(&code);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto *a, const auto *b) { return a->open_files > b->open_files; });
    return found;
}

std::string warning_words(const totals_t &totals) {
    std::string words;
    for (const code_count_t *code : codes_of(totals, severity_t::warning))
        join(words, std::string(code->kind->code) + " in " + std::to_string(code->open_files));
    return words;
}

std::string totals_text(const totals_t &totals) {
    const size_t rest = totals.count - totals.need_hands;
    std::string text, verdicts;
    if (totals.need_hands > 0)
        text += row("need hands", totals.need_hands, hands_words(totals));
    if (rest > 0)
        text += row(totals.need_hands > 0 ? "the rest" : "all", rest, rest_words(totals));
    if (totals.warned > 0)
        text += row("warnings", totals.warned, warning_words(totals));
    if (totals.agreed > 0)
        text += row("agreed", totals.agreed, "with findings that were agreed on");
    for (const auto &[verdict, number] : totals.verdicts)
        text += row("way back", number, verdict);
    return text;
}

// ---- causes

std::string cut(const std::string &text, size_t most) {
    return text.size() <= most ? text : text.substr(0, text.rfind(' ', most)) + " ...";
}

std::string cause_text(const code_count_t &code) {
    constexpr size_t indent = 2 + 8 + 5 + 7 + 2;
    const std::string example = quoted_name(code.example) +
                                (code.detail.empty() ? "" : ": " + cut(code.detail, most_detail));
    return "  " + column(code.kind->code, 8) + right(code.open_files, 5) +
           right(code.mendable_files, 7) + "  " + code.kind->title + '\n' +
           std::string(indent, ' ') + wrapped(example, indent) + '\n';
}

std::string causes_text(const totals_t &totals) {
    const auto causes = codes_of(totals, severity_t::error);
    if (causes.empty())
        return "";
    std::string text = "\n  cause      in  fixes  what happens, and an example\n";
    for (size_t i = 0; i < std::min(causes.size(), most_causes); i++)
        text += cause_text(*causes[i]);
    if (causes.size() > most_causes)
        text += "  and " + counted(causes.size() - most_causes, "more cause") + '\n';
    return text;
}

// ---- the worst

std::string codes_text(const std::vector<std::string> &codes) {
    std::string text;
    for (size_t i = 0; i < std::min(codes.size(), most_codes); i++)
        text += (i > 0 ? " " : "") + codes[i];
    return text + (codes.size() > most_codes ? " ..." : "");
}

std::string worst_text(const totals_t &totals) {
    if (totals.need_hands == 0)
        return "";
    const size_t shown = std::min(totals.worst.size(), most_worst);
    size_t width = 0, told = 0;
    for (size_t i = 0; i < shown; i++)
        width = std::max(width, quoted_name(totals.worst[i].file).size());
    width = std::min(width, most_name) + 2;
    std::string text = "\n  worst first\n";
    for (size_t i = 0; i < shown; i++) {
        const alike_t &one = totals.worst[i];
        const std::string what =
            one.state == state_t::unusable
                ? cut(without_name(one.file, one.problem), most_problem)
                : column(counted(one.findings.errors, "error"), 11) + codes_text(one.codes);
        text += "  " + column(quoted_name(one.file), width) +
                column(one.blocked ? "blocked" : state_name(one.state), 11) + what +
                (one.others > 0 ? "  and " + std::to_string(one.others) + " alike" : "") + '\n';
        told += 1 + one.others;
    }
    if (told < totals.need_hands)
        text += "  and " + std::to_string(totals.need_hands - told) + " more\n";
    return text;
}

} // namespace

std::string totals_lines(const header_t &header, const totals_t &totals) {
    const size_t hands = totals.need_hands;
    return visible(about(header, totals) + ": " +
                   (hands == 0   ? "none needs hands"
                    : hands == 1 ? "1 needs hands"
                                 : std::to_string(hands) + " need hands") +
                   '\n' + totals_text(totals));
}

std::string first_screen(const header_t &header, const totals_t &totals) {
    std::string text =
        totals_lines(header, totals) + visible(causes_text(totals) + worst_text(totals));
    if (!header.details && totals.count > 0)
        text += "\nMore: --details shows every finding, --format html makes a page to look around "
                "in,\nand infraconvert explain CODE what a finding means.\n";
    return text;
}

std::string states_table(const header_t &header, const totals_t &totals) {
    constexpr size_t state_width = 11;
    std::string text = "infraconvert: " + about(header, totals) + ":\n";
    for (const auto &[state, number] : totals.states)
        text += "  " + column(state_name(state), state_width) + std::to_string(number) + '\n';
    return text;
}

} // namespace infraconvert
