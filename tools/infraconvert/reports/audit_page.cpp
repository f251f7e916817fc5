#include "reports/audit_page.h"

#include "reports/findings_json.h"
#include "reports/mask.h"
#include "reports/report_page.h"

#include <algorithm>
#include <ctime>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

constexpr size_t context = 3; // unchanged lines around each change

// JSON that may stand in a script element: nothing in it can end the element.
std::string embedded(const json &value) {
    const std::string text = value.dump(-1, ' ', false, json::error_handler_t::replace);
    std::string safe;
    for (const char c : text)
        safe += c == '<' ? std::string("\\u003c") : std::string(1, c);
    return safe;
}

// For each line of the script, whether it stands close enough to a change to be shown.
std::vector<bool> shown_lines(const script_t &script) {
    std::vector<bool> shown(script.size());
    for (size_t i = 0; i < script.size(); i++) {
        if (script[i].edit == line_edit_t::keep)
            continue;
        const size_t end = std::min(i + context + 1, script.size());
        for (size_t near = i - std::min(i, context); near < end; near++)
            shown[near] = true;
    }
    return shown;
}

json rows_json(const converted_t &conversion) {
    const lines_t before = split_lines(*conversion.original);
    const lines_t after = split_lines(*conversion.result);
    const std::vector<bool> shown = shown_lines(conversion.script);
    json rows = json::array();
    for (size_t i = 0; i < shown.size(); i++) {
        const script_line_t &line = conversion.script[i];
        if (!shown[i]) {
            if (i > 0 && shown[i - 1] && i + 1 < shown.size())
                rows.push_back({".", 0, 0, "", ""});
            continue;
        }
        const bool added = line.edit == line_edit_t::add;
        const std::string_view text =
            without_newline(added ? after[line.after] : before[line.before]);
        rows.push_back({line.edit == line_edit_t::keep ? "="
                        : added                        ? "+"
                                                       : "-",
                        line.before + 1, line.after + 1, std::string(text),
                        line.edit == line_edit_t::keep ? "" : conversion.rule_of(line)});
    }
    return rows;
}

json services_json(const converted_t &conversion) {
    json services = json::array();
    for (const step_t &step : conversion.steps)
        services.push_back(
            {{"name", step.service->name},
             {"rule", step.routing.ids()},
             {"state", step.state()},
             {"added", step.changed.added},
             {"removed", step.changed.removed},
             {"reason", step.failure ? step.failure->reason : step.routing.words()}});
    return services;
}

json configuration_json(const audited_t &audited, size_t alike) {
    const finding_count_t count = count_findings(audited.findings);
    std::vector<std::string> codes;
    for (const finding_t &finding : audited.findings)
        codes.emplace_back(finding.kind->code);
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return {{"path", audited.file},
            {"alike", alike},
            {"state", audited.state()},
            {"problem", audited.problem},
            {"services", audited.services},
            {"codes", codes},
            {"tally", {count.errors, count.warnings, count.notes}}};
}

// Numbers for what is said of configurations: those that have the same said of them, whatever their
// line numbers, have the same number.
class likeness_t {
  public:
    size_t number(const audited_t &audited) {
        std::string said = std::string(audited.state()) + '\n' + audited.problem;
        for (const finding_t &finding : audited.findings) {
            said += std::string("\n") + finding.kind->code + '\n' + finding.detail;
            for (const auto *lines : {&finding.before, &finding.after}) {
                for (const evidence_t &line : *lines)
                    said += '\n' + line.text;
            }
        }
        return numbers.try_emplace(std::move(said), numbers.size()).first->second;
    }

  private:
    std::map<std::string, size_t> numbers;
};

std::string now() {
    const time_t time = std::time(nullptr);
    tm utc = {};
    gmtime_r(&time, &utc);
    char text[sizeof "2000-01-01T00:00:00Z"];
    return {text, strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

json rule_words() {
    json rules = json::object();
    for (const service_t &service : services()) {
        for (const engine::rule_t &rule : service.rules)
            rules[rule.id] = std::string(service.title) + ": " + rule.plain_words;
    }
    return rules;
}

json summary_json(const fleet_summary_t &summary) {
    json document = {{"from", summary.route.front()},
                     {"to", summary.route.back()},
                     {"tool_version", INFRACONVERT_VERSION},
                     {"date", now()},
                     {"rules", rule_words()},
                     {"states", summary.states},
                     {"codes", codes_json(summary)},
                     {"configurations", json::array()}};
    likeness_t likeness;
    for (const audited_t &audited : summary.results)
        document["configurations"].push_back(configuration_json(audited, likeness.number(audited)));
    return document;
}

std::string data_element(const std::string &id, const std::string &data) {
    return "<script type=\"application/json\" id=\"" + id + "\">" + data + "</script>\n";
}

} // namespace

std::string report_details(const audited_t &audited, const converted_t &conversion, bool mask) {
    const converted_t shown = shown_conversion(conversion, mask);
    json entries = findings_json(audited.findings);
    for (json &entry : entries)
        entry.erase("title"); // the page has it with the code
    return embedded(
        {{"findings", entries}, {"services", services_json(shown)}, {"rows", rows_json(shown)}});
}

std::string report_page(const fleet_summary_t &summary) {
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                       "style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n"
                       "<title>infraconvert audit</title>\n<style>" +
                       std::string(page_style) + "</style>\n" + page_body +
                       data_element("summary", embedded(summary_json(summary)));
    for (size_t i = 0; i < summary.results.size(); i++) {
        const std::string &details = summary.results[i].details;
        if (!details.empty())
            page += data_element("configuration-" + std::to_string(i), details);
    }
    return page + "<script>" + page_script + "</script>\n</html>\n";
}

} // namespace infraconvert
