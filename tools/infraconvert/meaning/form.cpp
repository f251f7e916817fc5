#include "meaning/form_parts.h"

#include <algorithm>
#include <set>

namespace infraconvert::meaning {

std::string title(std::string_view keyword, std::string_view type, std::string_view name) {
    std::string text(keyword);
    if (!type.empty())
        (text += " type ") += type;
    return (text += ' ') += name;
}

problem_t &form_check_t::add(fault_t fault, const std::string &subject, const std::string &words,
                             uint32_t line, const problem_t::touched_t &touched) {
    const auto [at, is_new] = known.try_emplace({fault, subject}, problems.size());
    if (is_new)
        problems.push_back({fault, subject, words});
    problem_t &problem = problems[at->second];
    if (problem.lines.empty() || problem.lines.back() != line)
        problem.lines.push_back(line);
    if (touched != problem_t::touched_t())
        problem.touches.push_back(touched);
    return problem;
}

bool form_check_t::knows_type(std::string_view type) const {
    if (type == types::none)
        return !reads.typed;
    if (type == types::control_plane)
        return reads.control_plane;
    return reads.typed && (type == types::qos || type == types::queuing || type == types::network);
}

problem_t &form_check_t::refuse_type(std::string_view type, const std::string &what, uint32_t line,
                                     const problem_t::touched_t &touched) {
    if (type == types::none)
        return add(fault_t::untyped_text, "", "maps and attachments without a type", line, touched);
    if (type == types::control_plane)
        return add(fault_t::control_plane, "", "control-plane policies", line, touched);
    if (!reads.typed)
        return add(fault_t::typed_text, "", "maps and attachments with a type", line, touched);
    return add(fault_t::unknown_type, what, what + ": no such type", line, touched);
}

namespace {

// A map that stands twice is no worse than one: what it touches counts, else its lines.
size_t weight_of(const problem_t &problem) {
    if (problem.weight > 0)
        return problem.weight;
    const std::set<problem_t::touched_t> touched(problem.touches.begin(), problem.touches.end());
    return touched.empty() ? problem.lines.size() : touched.size();
}

} // namespace

std::vector<problem_t> form_check_t::done() {
    for (problem_t &problem : problems) {
        auto &lines = problem.lines;
        std::sort(lines.begin(), lines.end());
        lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
        problem.weight = weight_of(problem);
    }
    return std::move(problems);
}

std::vector<problem_t> check_form(const model_t &model) {
    form_check_t check(model);
    for (const auto part : {check_maps, check_attachments, check_classes, check_lines})
        part(check);
    return check.done();
}

std::vector<unused_t> unused_maps(const model_t &model) {
    std::set<std::pair<std::string_view, std::string_view>> used;
    for (const policy_t &policy : model.policies) {
        for (const class_t &each : policy.classes)
            used.insert({policy.type, each.name});
    }
    std::vector<unused_t> unused;
    for (const class_map_t &map : model.class_maps) {
        if (!is_predefined(map.name) && !used.contains({map.type, map.name}))
            unused.push_back({title("class-map", map.type, map.name), map.headers.front()});
    }
    for (const policy_t &policy : model.policies) {
        if (!model.is_attached(policy))
            unused.push_back(
                {title("policy-map", policy.type, policy.name), policy.headers.front()});
    }
    return unused;
}

} // namespace infraconvert::meaning
