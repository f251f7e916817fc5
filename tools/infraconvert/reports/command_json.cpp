#include "reports/command_json.h"

#include "base/digest.h"
#include "conversion/border_releases.h"
#include "reports/findings_json.h"
#include "reports/json_document.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

json service_json(const service_t &service) {
    return {{"name", service.name},
            {"title", service.title},
            {"platform_name", service.platform_name},
            {"uuid", service.uuid}};
}

json rule_json(const engine::rule_t &rule) {
    return {{"id", rule.id}, {"description", rule.plain_words}};
}

json routing_json(const routing_t &routing) {
    json rules = json::array();
    for (const engine::rule_t *rule : routing.rules)
        rules.push_back(rule_json(*rule));
    return rules;
}

json hop_json(const route_t &route, size_t hop) {
    const auto &[from, to] = hop_of(route, hop);
    return {from, to};
}

json failure_json(const step_t &step, const converted_t &conversion) {
    if (!step.failure)
        return nullptr;
    const lines_t given = split_lines(conversion.given(step));
    json lines = json::array();
    for (const size_t number : step.failure->lines)
        lines.push_back(
            {{"number", number}, {"text", std::string(without_newline(given[number - 1]))}});
    json log = nullptr;
    if (!step.failure->log_line.empty())
        log = {{"file", step.service->log_name},
               {"line", step.failure->log_line_number},
               {"text", step.failure->log_line}};
    return {{"reason", step.failure->reason}, {"lines", lines}, {"log", log}};
}

json steps_json(const converted_t &conversion) {
    json steps = json::array();
    for (const step_t &step : conversion.steps) {
        json entry = service_json(*step.service);
        entry["rules"] = routing_json(step.routing);
        entry["no_rule_because"] = or_null(step.routing.why_none);
        entry["state"] = step.state();
        entry["added"] = step.changed.added;
        entry["removed"] = step.changed.removed;
        entry["failure"] = failure_json(step, conversion);
        if (conversion.has_stops())
            entry["hop"] = hop_json(conversion.route, step.hop);
        steps.push_back(entry);
    }
    return steps;
}

// Nothing of the exact text where its secrets are masked: with everything else of it at hand, a
// size tells how long they are, and a digest whether a guess is right.
json text_json(const std::string &text, bool masked) {
    if (masked)
        return {{"size", nullptr}, {"sha256", nullptr}};
    return {{"size", text.size()}, {"sha256", sha256(text)}};
}

json change_json(const converted_t &conversion, const script_line_t &line,
                 std::string_view content) {
    const bool removed = line.edit == line_edit_t::remove;
    const bool service_did = line.step >= 0 && line.step != fix_step;
    const step_t *step = service_did ? &conversion.steps[static_cast<size_t>(line.step)] : nullptr;
    json change = {{"edit", removed ? "remove" : "add"},
                   {"line", (removed ? line.before : line.after) + 1},
                   {"text", std::string(without_newline(content))},
                   {"service", step ? json(step->service->name) : json(nullptr)},
                   {"rule", line.step >= 0 ? json(conversion.rule_of(line)) : json(nullptr)}};
    if (step && conversion.has_stops())
        change["hop"] = hop_json(conversion.route, step->hop);
    return change;
}

json changes_json(const converted_t &conversion) {
    const lines_t before = split_lines(*conversion.original);
    const lines_t after = split_lines(*conversion.result);
    json changes = json::array();
    for (const script_line_t &line : conversion.script) {
        if (line.edit == line_edit_t::remove)
            changes.push_back(change_json(conversion, line, before[line.before]));
        else if (line.edit == line_edit_t::add)
            changes.push_back(change_json(conversion, line, after[line.after]));
    }
    return changes;
}

json conversion_json(const json_conversion_t &conversion) {
    const converted_t &exact = conversion.exact;
    json document;
    add_route(document, exact.route);
    document["failed"] = exact.failed();
    document["changed"] = exact.changes();
    document["input"] = text_json(*exact.original, conversion.shown.masked);
    document["result"] = text_json(*exact.result, conversion.shown.masked);
    document["services"] = steps_json(conversion.shown);
    document["changes"] = changes_json(conversion.shown);
    return document;
}

} // namespace

std::string plan_json(const std::vector<const service_t *> &chosen, const route_t &route) {
    json document = document_of("plan");
    add_route(document, route);
    document["services"] = json::array();
    for (size_t hop = 0; hop < hops_of(route); hop++) {
        for (const service_t *service : chosen) {
            const routing_t routing = routing_of(*service, hop_of(route, hop));
            json entry = service_json(*service);
            entry["rules"] = routing_json(routing);
            entry["no_rule_because"] = or_null(routing.why_none);
            if (hops_of(route) > 1)
                entry["hop"] = hop_json(route, hop);
            document["services"].push_back(entry);
        }
    }
    return printed(document);
}

std::string preview_json(const preview_json_t &preview) {
    json document = document_of("preview");
    document["path"] = preview.path;
    document.update(conversion_json(preview.forward));
    if (preview.back) {
        document["rollback"] = conversion_json(*preview.back);
        document["rollback"].erase("changes");
        document["reversible"] = *preview.back->exact.result == *preview.forward.exact.original;
        document["verdict"] = preview.verdict;
    }
    document["findings"] = findings_json(preview.findings);
    document["diff"] = preview.diff;
    return printed(document);
}

std::string convert_json(const std::string &path, const json_conversion_t &conversion,
                         const std::vector<finding_t> &findings, const std::string &written,
                         const std::string &backup) {
    json document = document_of("convert");
    document["path"] = path;
    document["written"] = or_null(written);
    document["backup"] = or_null(backup);
    document.update(conversion_json(conversion));
    document["findings"] = findings_json(findings);
    return printed(document);
}

std::string rules_json(const std::vector<found_rule_t> &rules) {
    json document = document_of("explain");
    document["rules"] = json::array();
    for (const found_rule_t &found : rules) {
        json entry = rule_json(*found.rule);
        entry["service"] = service_json(*found.service);
        entry["applies"] = json::array();
        for (const scope_t &scope : scope_of(*found.service, *found.rule))
            entry["applies"].push_back({{"from", scope.from}, {"to", scope.to}});
        document["rules"].push_back(entry);
    }
    document["asked_releases"] = border_releases;
    return printed(document);
}

std::string error_json(const std::string &command, const std::string &error, int exit_status) {
    json document = document_of(command.c_str());
    document["error"] = error;
    document["exit_status"] = exit_status;
    return printed(document);
}

} // namespace infraconvert
