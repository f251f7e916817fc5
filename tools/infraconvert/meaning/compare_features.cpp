// Features: on or off, whatever their spelling.

#include "meaning/comparison.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

bool is_read(const side_t &side, uint32_t line) {
    return std::none_of(side.problems.begin(), side.problems.end(), [&](const problem_t &problem) {
        return problem.fault == fault_t::spelling &&
               std::find(problem.lines.begin(), problem.lines.end(), line) != problem.lines.end();
    });
}

// True when the release reads a line that switches the feature on. In a spelling of another release
// it says nothing: the feature is off.
bool is_really_on(const side_t &side, const std::string &name, const feature_t &feature) {
    if (!feature.on || is_read(side, feature.line))
        return feature.on;
    const auto command = name == "npiv" ? spelled_t::npiv : spelled_t::fc_feature;
    return std::any_of(side.model.spelled.begin(), side.model.spelled.end(),
                       [&](const spelled_t &spelled) {
                           return spelled.command == command && !spelled.text.starts_with("no ") &&
                                  is_read(side, spelled.line);
                       });
}

const feature_t *find(const model_t &model, const std::string &name) {
    const auto found = model.features.find(name);
    return found == model.features.end() ? nullptr : &found->second;
}

const char *state(const feature_t *feature) {
    return !feature ? "not named" : feature->on ? "on" : "off";
}

void compare(comparison_t &comparison, const std::string &name) {
    const feature_t *old = find(comparison.before.model, name);
    const feature_t *now = find(comparison.after.model, name);
    if (!old || !now || old->on != now->on)
        comparison.add("IC048", "feature " + name + " was " + state(old) + " and is " + state(now),
                       {old ? old->line : 0}, {now ? now->line : 0});
    else if (!is_really_on(comparison.before, name, *old) &&
             is_really_on(comparison.after, name, *now))
        comparison.add("IC048", "feature " + name + " was not read and comes on", {old->line},
                       {now->line});
}

} // namespace

void compare_features(comparison_t &comparison) {
    std::set<std::string> names;
    for (const model_t *model : {&comparison.before.model, &comparison.after.model}) {
        for (const auto &[name, feature] : model->features)
            names.insert(name);
    }
    for (const std::string &name : names)
        compare(comparison, name);
}

} // namespace infraconvert::meaning
