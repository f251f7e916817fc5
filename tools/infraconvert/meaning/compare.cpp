#include "meaning/compare.h"

#include "meaning/comparison.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

bool stands_before(const difference_t &a, const difference_t &b) {
    if (a.severity() != b.severity())
        return a.severity() < b.severity();
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

std::string touch_key(const std::string &place, const std::string &policy,
                      const std::string &class_name) {
    return place + '\n' + policy + '\n' + class_name;
}

// The first of the entries that concern a row, wholly or by a part of it.
template<typename touched_t>
std::optional<size_t> first_touching(const touched_t &touched, const row_t &row) {
    std::optional<size_t> first;
    for (int parts = 0; parts < 8 && !touched.empty(); parts++) {
        const std::string none;
        const auto found =
            touched.find(touch_key(parts & 1 ? row.place : none, parts & 2 ? row.policy : none,
                                   parts & 4 ? row.class_name : none));
        if (found != touched.end() && (!first || found->second < *first))
            first = found->second;
    }
    return first;
}

} // namespace

comparison_t::comparison_t(const side_t &original, const side_t &result,
                           std::span<const std::string_view> texts)
    : releases(texts.begin(), texts.end()), before(original), after(result) {
    for (const std::string_view text : texts)
        route.push_back(read_release(text));
}

difference_t &comparison_t::add(finding_code_t code, const std::string &words,
                                const lines_t &before_lines, const lines_t &after_lines) {
    differences.push_back({code, words, {}, before_lines, after_lines});
    return differences.back();
}

void comparison_t::add_cause(const problem_t &problem) {
    const size_t difference = differences.size();
    for (const auto &[place, policy, class_name] : problem.touches) {
        const std::string key = touch_key(place, policy, class_name);
        causes.try_emplace(key, difference);
        if (is_other_model(problem.fault))
            unconverted.try_emplace(key, difference);
        if (problem.fault == fault_t::match_of_other_type)
            told_class_maps.insert(class_name);
    }
}

std::optional<size_t> comparison_t::cause_of(const row_t &row) const {
    return first_touching(causes, row);
}

bool comparison_t::is_told(std::string_view class_map) const {
    return told_class_maps.contains(std::string(class_map));
}

bool comparison_t::is_unconverted(const row_t &row) const {
    return first_touching(unconverted, row).has_value();
}

std::vector<difference_t> original_t::compare(const side_t &result,
                                              std::span<const std::string_view> route) const {
    comparison_t comparison(side, result, route);
    for (const auto part :
         {compare_form, compare_rows, compare_order, compare_groups, compare_content,
          compare_features, compare_vlans, compare_blocks, tell_mtus})
        part(comparison);
    sort_lines(comparison.differences);
    return std::move(comparison.differences);
}

std::vector<difference_t> original_t::compare(std::string_view result,
                                              std::span<const std::string_view> route) const {
    return compare(read(result, route), route);
}

bool has_errors(const std::vector<difference_t> &differences) {
    return std::any_of(differences.begin(), differences.end(),
                       [](const difference_t &d) { return d.is_error(); });
}

} // namespace infraconvert::meaning
