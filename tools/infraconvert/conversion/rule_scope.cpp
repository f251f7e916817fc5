#include "conversion/rule_scope.h"

#include "base/errors.h"
#include "base/suggest.h"
#include "conversion/border_releases.h"

#include <algorithm>
#include <cctype>

namespace infraconvert {

namespace {

bool applies(const service_t &service, const engine::rule_t &rule, const release_pair_t &releases) {
    const routing_t routing = routing_of(service, releases);
    return std::find(routing.rules.begin(), routing.rules.end(), &rule) != routing.rules.end();
}

std::vector<std::string> targets(const service_t &service, const engine::rule_t &rule,
                                 const std::string &from) {
    std::vector<std::string> result;
    for (const char *to : border_releases) {
        if (applies(service, rule, {from, to}))
            result.emplace_back(to);
    }
    return result;
}

} // namespace

std::vector<scope_t> scope_of(const service_t &service, const engine::rule_t &rule) {
    std::vector<scope_t> scopes;
    bool follows = false; // the release before had the same targets
    for (const char *from : border_releases) {
        const std::vector<std::string> to = targets(service, rule, from);
        if (follows && scopes.back().to == to)
            scopes.back().from.emplace_back(from);
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
        for (const engine::rule_t &rule : service.rules) {
            if (wanted == rule.id)
                return {&service, &rule};
            known.emplace_back(rule.id);
        }
    }
    throw usage_error_t("unknown rule '" + id + "'" + suggestion(wanted, known) +
                        " (infraconvert explain lists all rules)");
}

} // namespace infraconvert
