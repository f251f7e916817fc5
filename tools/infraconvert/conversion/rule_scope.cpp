#include "conversion/rule_scope.h"

#include "base/errors.h"
#include "base/suggest.h"

#include <algorithm>
#include <cctype>

namespace infraconvert {

namespace {

bool applies(const service_t &service, const engine::rule_t &rule, const release_pair_t &releases) {
    return !service.why_not(releases) && rule.applies();
}

std::vector<std::string> targets(const service_t &service, const engine::rule_t &rule,
                                 const std::string &from) {
    std::vector<std::string> result;
    for (const std::string &to : asked_releases()) {
        if (applies(service, rule, {from, to}))
            result.push_back(to);
    }
    return result;
}

} // namespace

const std::vector<std::string> &asked_releases() {
    static const std::vector<std::string> releases = {
        "3.1(1)", "4.0(1)", "4.1(2)", "4.1(3)",      "4.1(3)K1(1)", "4.1(3)K2(1)", "4.2(1)",
        "5.0(1)", "5.0(2)", "5.0(3)", "5.0(3)U1(1)", "5.0(3)U2(1)", "5.1(1)",      "6.0(1)"};
    return releases;
}

std::vector<scope_t> scope_of(const service_t &service, const engine::rule_t &rule) {
    std::vector<scope_t> scopes;
    bool follows = false; // the release before had the same targets
    for (const std::string &from : asked_releases()) {
        const std::vector<std::string> to = targets(service, rule, from);
        if (follows && scopes.back().to == to)
            scopes.back().from.push_back(from);
        else if (!to.empty())
            scopes.push_back({{from}, to});
        follows = !to.empty();
    }
    return scopes;
}

found_rule_t rule_named(const std::string &id) {
    std::string wanted = id;
    std::transform(wanted.begin(), wanted.end(), wanted.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    std::vector<std::string> known;
    for (const service_t &service : services()) {
        for (const engine::rule_t &rule : service.rules()) {
            if (wanted == rule.id)
                return {&service, &rule};
            known.emplace_back(rule.id);
        }
    }
    throw usage_error("unknown rule '" + id + "'" + suggestion(wanted, known) +
                      " (infraconvert explain lists all rules)");
}

} // namespace infraconvert
