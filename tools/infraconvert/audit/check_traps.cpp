// What can be seen in the original alone.

#include "audit/checks.h"

#include <algorithm>

namespace infraconvert {

namespace {

bool is_map_word(std::string_view word) { return word == "class-map" || word == "policy-map"; }

// Maps and attachments whose form the source release does not write.
void check_types(audit_t &audit) {
    const bool typed = audit.from >= release_typed;
    const finding_code_t code = typed ? finding_code_t("IC061") : finding_code_t("IC060");
    for (const map_t &map : audit.qos_before.maps) {
        if (map.type.empty() == typed)
            audit.add(code, "", {map.stanza.first}, {});
    }
    for (const attachment_t &attachment : audit.qos_before.attachments) {
        // The policy of the control plane is attached without a type everywhere.
        if (attachment.type.empty() == typed && attachment.place != "control-plane")
            audit.add(code, attachment.place, {attachment.line}, {});
    }
}

void check_order(audit_t &audit) {
    const auto &maps = audit.qos_before.maps;
    const auto &attachments = audit.qos_before.attachments;
    if (maps.empty() || attachments.empty())
        return;
    const size_t last_map = maps.back().stanza.first;
    if (attachments.front().line < last_map)
        audit.add("IC062", "the last map stands behind the first attachment",
                  {attachments.front().line, last_map}, {});
}

void check_keywords(audit_t &audit) {
    if (audit.qos_before.maps.empty())
        return;
    const size_t first_map = audit.qos_before.maps.front().stanza.first;
    for (size_t i = first_map; i < audit.before.lines.size(); i++) {
        const std::string_view line = audit.before.lines[i];
        const words_t words = split_words(line);
        const bool header = !words.empty() && is_map_word(words[0]) && line.starts_with(words[0]);
        const size_t from = header ? words[0].size() : 0;
        if (line.find("class-map", from) != line.npos || line.find("policy-map", from) != line.npos)
            audit.add("IC063", "", {i}, {});
    }
}

bool has_qos_rule(const audit_t &audit) {
    for (const step_t &step : audit.conversion.steps) {
        if (std::string_view(step.service->name) == "qos")
            return !step.routing.rules.empty();
    }
    return false;
}

} // namespace

void check_traps(audit_t &audit) {
    if (!audit.before.lines.empty() && !audit.before.lines.back().ends_with('\n'))
        audit.add("IC065", "", {audit.before.lines.size() - 1}, {});
    if (!has_qos_rule(audit))
        return;
    check_types(audit);
    check_order(audit);
    if (audit.from < release_typed)
        check_keywords(audit);
}

void check_version_line(audit_t &audit) {
    for (size_t i = 0; i < audit.before.lines.size(); i++) {
        const std::string_view line = audit.before.lines[i];
        if (!line.starts_with("version "))
            continue;
        const release_numbers_t wrote = parse_release(std::string(trimmed(line.substr(8))));
        if (wrote[0] > 0 && !std::equal(wrote.begin(), wrote.begin() + 3, audit.from.begin()))
            audit.add("IC064", "", {i}, {});
        return;
    }
}

void check_failures(audit_t &audit) {
    for (const step_t &step : audit.conversion.steps) {
        if (!step.failure)
            continue;
        audit_t::numbers_t lines;
        for (const size_t number : step.failure->lines)
            lines.push_back(number - 1);
        audit.add("IC090", std::string(step.service->name) + ": " + step.failure->reason, lines,
                  {});
    }
}

void check_second_run(audit_t &audit) {
    conversion_request_t again = {.text = audit.conversion.result,
                                  .releases = audit.conversion.releases,
                                  .services = {},
                                  .keep_going = true,
                                  .wants_logs = false,
                                  .log_directory = {}};
    for (const step_t &step : audit.conversion.steps) {
        if (step.changes())
            again.services.push_back(step.service);
    }
    if (again.services.empty())
        return;
    const converted_t second = run_conversion(again);
    std::string names;
    for (const step_t &step : second.steps) {
        if (step.changes() || step.failure)
            (names += names.empty() ? "" : ", ") += step.service->name;
    }
    if (!names.empty())
        audit.add("IC070", names, {}, {});
}

} // namespace infraconvert
