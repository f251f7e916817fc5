#include "meaning/compare.h"

#include "meaning/comparison.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

bool stands_before(const difference_t &a, const difference_t &b) {
    if (a.weight != b.weight)
        return a.weight < b.weight;
    if (a.code != b.code)
        return a.code < b.code;
    return std::pair(a.before, a.after) < std::pair(b.before, b.after);
}

void sort_lines(std::vector<difference_t> &differences) {
    for (difference_t &difference : differences) {
        for (lines_t *lines : {&difference.before, &difference.after}) {
            std::sort(lines->begin(), lines->end());
            lines->erase(std::unique(lines->begin(), lines->end()), lines->end());
            std::erase(*lines, 0U);
        }
    }
    std::stable_sort(differences.begin(), differences.end(), stands_before);
}

bool touches(const problem_t &problem, const row_t &row) {
    const auto fits = [](const std::string &wanted, const std::string &has) {
        return wanted.empty() || wanted == has;
    };
    return std::any_of(problem.touches.begin(), problem.touches.end(), [&](const auto &touched) {
        return fits(touched.place, row.place) && fits(touched.policy, row.policy) &&
               fits(touched.class_name, row.class_name);
    });
}

} // namespace

comparison_t::comparison_t(std::string_view before_text, std::string_view after_text,
                           std::span<const std::string_view> texts)
    : releases(texts.begin(), texts.end()), before(before_text, texts.front(), texts.front()),
      after(after_text, texts.back(), texts.front()) {
    for (const std::string_view text : texts)
        route.push_back(read_release(text));
}

difference_t &comparison_t::add(const char *code, weight_t weight, const std::string &words,
                                const lines_t &before_lines, const lines_t &after_lines) {
    differences.push_back({code, weight, words, {}, before_lines, after_lines});
    return differences.back();
}

difference_t *comparison_t::cause_of(const row_t &row) {
    for (const cause_t &cause : causes) {
        if (touches(*cause.problem, row))
            return &differences[cause.difference];
    }
    return nullptr;
}

bool comparison_t::is_told(std::string_view class_map) const {
    return std::any_of(causes.begin(), causes.end(), [&](const cause_t &cause) {
        const auto &touched = cause.problem->touches;
        return cause.problem->fault == fault_t::match_of_other_type &&
               std::any_of(touched.begin(), touched.end(),
                           [&](const auto &each) { return each.class_name == class_map; });
    });
}

bool comparison_t::is_unconverted(const row_t &row) const {
    return std::any_of(causes.begin(), causes.end(), [&](const cause_t &cause) {
        return is_other_model(cause.problem->fault) && touches(*cause.problem, row);
    });
}

std::vector<difference_t> compare(std::string_view before, std::string_view after,
                                  std::span<const std::string_view> route) {
    comparison_t comparison(before, after, route);
    for (const auto part : {compare_form, compare_rows, compare_order, compare_content,
                            compare_features, compare_vlans, compare_blocks, tell_mtus})
        part(comparison);
    sort_lines(comparison.differences);
    return std::move(comparison.differences);
}

bool has_errors(const std::vector<difference_t> &differences) {
    return std::any_of(differences.begin(), differences.end(),
                       [](const difference_t &d) { return d.weight == weight_t::error; });
}

} // namespace infraconvert::meaning
