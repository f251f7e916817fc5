// Policy-maps written anew with the classes that they have: each once, in the original's order.

#include "mending/restore.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning;

namespace {

bool is_told(const std::vector<uint32_t> &told, const class_t &each) {
    return std::any_of(each.lines.begin(), each.lines.end(), [&](uint32_t line) {
        return std::binary_search(told.begin(), told.end(), line);
    });
}

bool has_told_class(const policy_t &policy, const std::vector<uint32_t> &told) {
    return std::any_of(policy.classes.begin(), policy.classes.end(),
                       [&](const class_t &each) { return is_told(told, each); });
}

const policy_t *policy_told_of(const model_t &model, const std::vector<uint32_t> &told) {
    for (const policy_t &policy : model.policies) {
        if (has_told_class(policy, told))
            return &policy;
    }
    return nullptr;
}

// Classes that the original does not order stay behind those that it does.
std::vector<class_t> in_order_of(const policy_t &original, std::vector<class_t> classes) {
    const auto position = [&](const class_t &wanted) {
        const auto &all = original.classes;
        return std::find_if(all.begin(), all.end(),
                            [&](const class_t &each) { return each.name == wanted.name; }) -
               all.begin();
    };
    std::stable_sort(classes.begin(), classes.end(),
                     [&](const class_t &a, const class_t &b) { return position(a) < position(b); });
    return classes;
}

} // namespace

candidate_t restored_order(const scene_t &scene, const difference_t &difference) {
    const policy_t *original = policy_told_of(scene.before, difference.before);
    const policy_t *policy = policy_told_of(scene.after, difference.after);
    if (!original || !policy)
        return {};
    const bool says_type = !policy->type.empty() && policy->type != types::control_plane;
    const std::string front = "  class " + (says_type ? type_words(policy->type) : "");
    command_t command = {.header =
                             "policy-map " + type_words(policy->type) + std::string(policy->name)};
    for (const class_t &each : policy->classes)
        command.body.push_back({front + std::string(each.name), true});
    for (const class_t &each : in_order_of(*original, policy->classes)) {
        command.body.push_back({front + std::string(each.name)});
        for (const action_t &action : each.actions)
            command.body.push_back({"    " + action.text});
    }
    return {{command}, ""};
}

} // namespace infraconvert::mending
