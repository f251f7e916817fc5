// Lines that the target does not read: errors when the source read them or the conversion made them
// worse, else one warning.

#include "meaning/compare.h"
#include "meaning/comparison.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

// The code of a fault of the result, and of one that stood in the original.
struct codes_t {
    const char *result, *original;
};

codes_t codes_of(const problem_t &problem) {
    constexpr const char *already = "IC058";
    switch (problem.fault) {
    case fault_t::untyped_text:
        return {"IC043", "IC061"};
    case fault_t::typed_text:
        return {"IC043", "IC060"};
    case fault_t::control_plane:
        return {"IC047", already};
    case fault_t::front_words:
        return {problem.weight > 1 ? "IC024" : "IC046", already};
    case fault_t::unknown_type:
    case fault_t::attachment_form:
    case fault_t::class_line:
    case fault_t::no_name:
        return {"IC016", already};
    case fault_t::second_attachment:
        return {"IC017", already};
    case fault_t::class_without_map:
        return {"IC010", "IC011"};
    case fault_t::attachment_without_map:
        return {"IC012", "IC013"};
    case fault_t::empty_class_map:
        return {"IC014", already};
    case fault_t::action_of_other_type:
    case fault_t::match_of_other_type:
        return {"IC015", already};
    case fault_t::spelling:
        return {"IC044", already};
    case fault_t::fcoe_not_alone:
        return {"IC069", already};
    case fault_t::fabric_order:
        return {"IC068", already};
    case fault_t::stray_line:
    case fault_t::map_line:
        return {"IC018", already};
    case fault_t::vlan_list:
        return {"IC019", already};
    case fault_t::vlan_zero:
        return {"IC066", already};
    case fault_t::carriage_returns:
        return {"IC006", "IC006"};
    case fault_t::no_last_newline:
        return {"IC065", "IC065"};
    }
    return {"IC016", already};
}

bool is_harmless(fault_t fault) {
    return fault == fault_t::carriage_returns || fault == fault_t::no_last_newline;
}

const problem_t *same_problem(const std::vector<problem_t> &problems, const problem_t &wanted) {
    for (const problem_t &problem : problems) {
        if (problem.fault == wanted.fault && problem.subject == wanted.subject)
            return &problem;
    }
    return nullptr;
}

weight_t weight_in_original(const problem_t &problem) {
    return is_other_model(problem.fault) ? weight_t::error : weight_t::warning;
}

std::string unread(const problem_t &problem, std::string_view release) {
    return is_harmless(problem.fault)
               ? problem.words
               : std::string(release) + " does not read this: " + problem.words;
}

// One conversion leaves the same word in front of many names.
bool add_to_same(comparison_t &comparison, const problem_t &problem, const std::string &words) {
    for (difference_t &known : comparison.differences) {
        if (known.code == codes_of(problem).result && known.words == words) {
            known.after.insert(known.after.end(), problem.lines.begin(), problem.lines.end());
            return true;
        }
    }
    return false;
}

void tell_result(comparison_t &comparison, const problem_t &problem) {
    const problem_t *old = same_problem(comparison.before.problems, problem);
    const bool worse = old && !comparison.crosses_models() && problem.weight > old->weight;
    if (old && !worse)
        return; // told with the original
    const std::string words = unread(problem, comparison.releases.back());
    if (problem.fault == fault_t::front_words && add_to_same(comparison, problem, words))
        return;
    comparison.causes.push_back({&problem, comparison.differences.size()});
    comparison.add(codes_of(problem).result,
                   is_harmless(problem.fault) ? weight_t::warning : weight_t::error, words,
                   old ? old->lines : lines_t(), problem.lines);
}

void tell_original(comparison_t &comparison, const problem_t &problem) {
    const problem_t *now = same_problem(comparison.after.problems, problem);
    if (now && !comparison.crosses_models() && now->weight > problem.weight)
        return; // the conversion made it worse, which is told with the result
    if (is_other_model(problem.fault))
        comparison.causes.push_back({&problem, comparison.differences.size()});
    comparison.add(codes_of(problem).original, weight_in_original(problem),
                   problem.words + "; the original has it already", problem.lines,
                   now ? now->lines : lines_t());
}

} // namespace

void compare_form(comparison_t &comparison) {
    for (const problem_t &problem : comparison.after.problems)
        tell_result(comparison, problem);
    for (const problem_t &problem : comparison.before.problems)
        tell_original(comparison, problem);
}

std::vector<difference_t> judge_form(std::string_view text, std::string_view release) {
    const model_t model(text, release, release);
    std::vector<difference_t> found;
    for (const problem_t &problem : check_form(model))
        found.push_back(
            {is_other_model(problem.fault) ? codes_of(problem).original : codes_of(problem).result,
             is_harmless(problem.fault) ? weight_t::warning : weight_t::error,
             unread(problem, release),
             {},
             problem.lines,
             {}});
    for (const unused_t &unused : unused_maps(model))
        found.push_back(
            {"IC057", weight_t::note, unused.title + " is not used", {}, {unused.line}, {}});
    std::stable_sort(found.begin(), found.end(), [](const auto &a, const auto &b) {
        return a.weight != b.weight ? a.weight < b.weight : a.before < b.before;
    });
    return found;
}

} // namespace infraconvert::meaning
