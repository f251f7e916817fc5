// explain: what a rule does, and for which releases; what a finding means.

#include "base/errors.h"
#include "base/messages.h"
#include "commands/common.h"
#include "conversion/border_releases.h"
#include "conversion/rule_scope.h"
#include "reports/command_json.h"
#include "reports/findings_json.h"
#include "reports/findings_text.h"

#include <memory>

namespace infraconvert {

namespace {

struct explain_options_t {
    std::string code; // of a rule or a finding; empty: all
    bool json = false;
};

std::vector<found_rule_t> all_rules() {
    std::vector<found_rule_t> rules;
    for (const service_t &service : services()) {
        for (const engine::rule_t &rule : service.rules)
            rules.push_back({&service, &rule});
    }
    return rules;
}

std::string list(const std::vector<found_rule_t> &rules) {
    constexpr size_t id_width = 12;
    std::string text;
    for (const found_rule_t &found : rules)
        text +=
            column(found.rule->id, id_width) +
            wrapped(std::string(found.service->title) + ": " + found.rule->plain_words, id_width) +
            '\n';
    return text;
}

std::string joined(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

std::string details(const found_rule_t &found) {
    constexpr size_t indent = 9;
    std::string text = std::string(found.rule->id) + " (" + found.service->title + ", service " +
                       found.service->name + ")\n\n" + "What it does:\n  " +
                       wrapped(found.rule->plain_words, 2) + "\n\nWhen it applies:\n";
    for (const scope_t &scope : scope_of(*found.service, *found.rule))
        text += "  from   " + wrapped(joined(scope.from), indent) + "\n  to     " +
                wrapped(joined(scope.to), indent) + "\n\n";
    return text +
           wrapped("The rule was asked about " +
                       joined({std::begin(border_releases), std::end(border_releases)}) +
                       "; infraconvert plan tells about any other pair.",
                   0) +
           '\n';
}

int run(const explain_options_t &options) {
    if (const finding_kind_t *kind = finding_kind_named(options.code)) {
        write_output(options.json ? kind_document(*kind) : finding_details(*kind));
        return exit_done;
    }
    if (const retired_kind_t *kind = retired_kind_named(options.code)) {
        write_output(options.json ? kind_document(*kind) : finding_details(*kind));
        return exit_done;
    }
    const bool one = !options.code.empty();
    const auto rules = one ? std::vector{rule_named(options.code)} : all_rules();
    if (options.json)
        write_output(rules_json(rules));
    else
        write_output(one ? details(rules[0]) : list(rules) + '\n' + finding_list());
    return exit_done;
}

std::function<int()> declare(CLI::App &arguments) {
    const auto options = std::make_shared<explain_options_t>();
    arguments
        .add_option("RULE", options->code,
                    "Rule, such as IC-QOS-04, or finding, such as IC041; without it all are listed")
        ->type_name("");
    declare_json(arguments, options->json);
    return [options] { return run(*options); };
}

} // namespace

const command_t explain_command = {
    .name = "explain",
    .summary = "Tell what a conversion rule does and when, or what a finding means",
    .examples = "infraconvert explain IC-QOS-04\n"
                "infraconvert explain IC041\n"
                "infraconvert explain\n",
    .declare = declare,
};

} // namespace infraconvert
