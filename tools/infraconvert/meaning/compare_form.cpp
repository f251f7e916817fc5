// Lines that the target does not read: errors when the source read them or the conversion made them
// worse, else one warning.

#include "meaning/compare.h"
#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

// The code of a fault of the result, and of one that stood in the original.
struct codes_t {
    finding_code_t result, original;
};

codes_t codes_of(const problem_t &problem) {
    constexpr finding_code_t already = "IC058";
    switch (problem.fault) {
    case fault_t::untyped_text:
        return {"IC043", problem.of_maps ? finding_code_t("IC061") : already};
    case fault_t::typed_text:
        return {"IC043", problem.of_maps ? finding_code_t("IC060") : already};
    case fault_t::control_plane:
        return {"IC047", problem.of_maps ? finding_code_t("IC060") : already};
    case fault_t::front_words:
        return {problem.weight > 1 ? finding_code_t("IC024") : "IC046", already};
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
    case fault_t::taken_back:
    case fault_t::odd_blank:
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

std::string unread(const problem_t &problem, std::string_view release) {
    return is_harmless(problem.fault)
               ? problem.words
               : std::string(release) + " does not read this: " + problem.words;
}

// The problems of a text by what they are about.
class known_problems_t {
  public:
    explicit known_problems_t(const std::vector<problem_t> &problems) {
        for (const problem_t &problem : problems)
            known.try_emplace({problem.fault, problem.subject}, &problem);
    }
    const problem_t *same(const problem_t &wanted) const {
        const auto found = known.find({wanted.fault, wanted.subject});
        return found == known.end() ? nullptr : found->second;
    }

  private:
    std::map<std::pair<fault_t, std::string>, const problem_t *> known;
};

class form_teller_t {
  public:
    explicit form_teller_t(comparison_t &told)
        : comparison(told), before(told.before.problems), after(told.after.problems) {}

    void run() {
        for (const problem_t &problem : comparison.after.problems) {
            if (!problem.goes_with_another)
                tell_result(problem);
        }
        for (const problem_t &problem : comparison.before.problems) {
            if (!problem.goes_with_another)
                tell_original(problem);
        }
    }

  private:
    bool is_worse(const problem_t &old, const problem_t &now) const {
        return !comparison.crosses_models() && now.weight > old.weight;
    }

    void tell_result(const problem_t &problem) {
        const problem_t *old = before.same(problem);
        if (old && !is_worse(*old, problem))
            return; // told with the original
        const std::string words = unread(problem, comparison.releases.back());
        if (problem.fault == fault_t::front_words && add_to_same(problem, words))
            return;
        comparison.add_cause(problem);
        comparison.add(codes_of(problem).result, words, old ? old->lines : lines_t(),
                       problem.lines);
    }

    // One conversion leaves the same word in front of many names.
    bool add_to_same(const problem_t &problem, const std::string &words) {
        const auto [known, is_new] = front_words.try_emplace(words, comparison.differences.size());
        if (is_new)
            return false;
        lines_t &lines = comparison.differences[known->second].after;
        lines.insert(lines.end(), problem.lines.begin(), problem.lines.end());
        return true;
    }

    void tell_original(const problem_t &problem) {
        const problem_t *now = after.same(problem);
        if (now && is_worse(problem, *now))
            return; // told with the result
        if (is_other_model(problem.fault))
            comparison.add_cause(problem);
        comparison.add(codes_of(problem).original, problem.words + "; the original has it already",
                       problem.lines, now ? now->lines : lines_t());
    }

    comparison_t &comparison;
    const known_problems_t before, after;
    std::unordered_map<std::string, size_t> front_words; // the difference that tells of them
};

} // namespace

void compare_form(comparison_t &comparison) { form_teller_t(comparison).run(); }

std::vector<difference_t> judge_form(std::string_view text, std::string_view release) {
    const model_t model(text, release, release);
    std::vector<difference_t> found;
    for (const problem_t &problem : check_form(model)) {
        const codes_t codes = codes_of(problem);
        const bool other_model = problem.of_maps && codes.original != finding_code_t("IC058");
        if (!problem.goes_with_another)
            found.push_back({other_model ? codes.original : codes.result,
                             unread(problem, release),
                             {},
                             problem.lines,
                             {}});
    }
    for (const unused_t &unused : unused_maps(model))
        found.push_back({"IC057", unused.title + " is not used", {}, {unused.line}, {}});
    std::stable_sort(found.begin(), found.end(), [](const auto &a, const auto &b) {
        return a.severity() != b.severity() ? a.severity() < b.severity() : a.before < b.before;
    });
    return found;
}

} // namespace infraconvert::meaning
