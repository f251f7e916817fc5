#include "secrets/harmless_lines.h"

#include "secrets/harmless_table.h"

#include <algorithm>

namespace infraconvert {

namespace {

bool is_body_row(std::string_view row) { return row.starts_with(' '); }

// Calls visit for each row of the table.
template<typename visit_t> void for_each_row(std::string_view table, visit_t visit) {
    while (!table.empty()) {
        const std::string_view row = table.substr(0, table.find('\n'));
        table.remove_prefix(std::min(table.size(), row.size() + 1));
        if (!row.empty())
            visit(row);
    }
}

} // namespace

void harmless_lines_t::patterns_t::add(std::string_view row, const body_t *body) {
    auto pattern = std::make_unique<const row_t>(row_t{line_pattern_t(row), body});
    const auto firsts = pattern->pattern.first_words();
    for (const std::string_view word : firsts)
        by_first_word[word].push_back(pattern.get());
    if (firsts.empty())
        others.push_back(pattern.get());
    rows.push_back(std::move(pattern));
}

harmless_lines_t::match_t
harmless_lines_t::patterns_t::best(std::span<const std::string_view> words) const {
    match_t best;
    const auto compare = [&](const row_t &row) {
        if (const size_t known = row.pattern.fitting_words(words); known > best.words)
            best = {known, known == words.size(), row.body};
    };
    if (words.empty())
        return best;
    if (const auto found = by_first_word.find(words[0]); found != by_first_word.end()) {
        for (const row_t *row : found->second)
            compare(*row);
    }
    for (const row_t *row : others)
        compare(*row);
    return best;
}

// First lines that follow one another share the rows behind them.
void harmless_lines_t::read(std::string_view table, patterns_t *also) {
    body_t *body = nullptr;
    bool in_body = true;
    for_each_row(table, [&](std::string_view row) {
        if (is_body_row(row)) {
            body->patterns.add(row, nullptr);
            body->has_lines = true;
            if (also)
                also->add(row, nullptr);
        } else {
            if (in_body)
                body = bodies.emplace_back(std::make_unique<body_t>()).get();
            headers.add(row, body);
        }
        in_body = is_body_row(row);
    });
}

harmless_lines_t::harmless_lines_t() {
    read(harmless_maps, &in_maps);
    read(harmless_table, nullptr);
    for_each_row(harmless_everywhere, [&](std::string_view row) { everywhere.add(row, nullptr); });
}

const harmless_lines_t &harmless_lines_t::get() {
    static const harmless_lines_t lines;
    return lines;
}

// "no" in front takes a command back, whatever it is.
harmless_lines_t::match_t harmless_lines_t::match(const patterns_t &patterns,
                                                  std::span<const std::string_view> words) {
    match_t found = patterns.best(words);
    if (found.words == 0 && words.size() > 1 && words[0] == "no") {
        found = patterns.best(words.subspan(1));
        found.words += found.words > 0; // the "no"
    }
    return found;
}

harmless_lines_t::match_t
harmless_lines_t::first_line(std::span<const std::string_view> words) const {
    match_t found = match(headers, words);
    if (!found.complete && found.body && !found.body->has_lines)
        found.body = nullptr;
    return found;
}

harmless_lines_t::match_t
harmless_lines_t::body_line(const body_t *body, std::span<const std::string_view> words) const {
    if (const match_t found = everywhere.best(words); found.complete || !body)
        return found.complete ? found : match_t{};
    if (const match_t found = match(body->patterns, words); found.words > 0)
        return found;
    // An indented first line, as it is found in files that people wrote.
    for (const patterns_t *others : {&in_maps, &headers}) {
        if (const match_t found = match(*others, words); found.complete)
            return found;
    }
    return {};
}

} // namespace infraconvert
