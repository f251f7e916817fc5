// Static Analysis Results Interchange Format 2.1.0, which code review systems read.

#include "reports/findings_json.h"
#include "reports/formats.h"
#include "reports/json_document.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

const char *sarif_level(severity_t severity) { return severity_name(severity); }

json sarif_rule(const finding_kind_t &kind) {
    return {{"id", kind.code},
            {"shortDescription", {{"text", kind.title}}},
            {"fullDescription", {{"text", kind.explanation}}},
            {"help", {{"text", kind.advice}}},
            {"defaultConfiguration", {{"level", sarif_level(kind.severity)}}}};
}

std::string sarif_message(const finding_t &finding) {
    std::string text = finding.kind->title;
    if (!finding.detail.empty())
        text += ": " + finding.detail;
    for (const evidence_t &line : finding.after)
        text += "; in the result line " + std::to_string(line.number) + ": " + line.text;
    return text;
}

// A file name as SARIF wants it: a URI, relative when the name is.
std::string uri_of(const std::string &file) {
    constexpr const char *digits = "0123456789ABCDEF";
    std::string uri = file.starts_with("/") ? "file://" : "";
    for (const char c : file) {
        const auto byte = static_cast<unsigned char>(c);
        if ((std::isalnum(byte) && byte < 0x80) ||
            std::string_view("/._-~").find(c) != std::string_view::npos)
            uri += c;
        else
            uri += std::string("%") + digits[byte / 16] + digits[byte % 16];
    }
    return uri;
}

// Edits of the file in which something was found; lines to type on the switch are none of these.
json sarif_fixes(const std::string &file, const std::vector<fix_text_t> &fixes) {
    json list = json::array();
    for (const fix_text_t &fix : fixes) {
        json replacements = json::array();
        for (const replacement_t &each : fix.replacements)
            replacements.push_back({{"deletedRegion",
                                     {{"startLine", each.line},
                                      {"startColumn", 1},
                                      {"endLine", each.line + each.removed},
                                      {"endColumn", 1}}},
                                    {"insertedContent", {{"text", each.text}}}});
        if (!replacements.empty())
            list.push_back(
                {{"description", {{"text", "Edit the original before the conversion"}}},
                 {"artifactChanges", json::array({{{"artifactLocation", {{"uri", uri_of(file)}}},
                                                   {"replacements", replacements}}})}});
    }
    return list;
}

json sarif_result(const std::string &file, const finding_t &finding) {
    json location = {{"physicalLocation", {{"artifactLocation", {{"uri", uri_of(file)}}}}}};
    if (!finding.before.empty())
        location["physicalLocation"]["region"] = {{"startLine", finding.before[0].number}};
    json result = {{"ruleId", finding.kind->code},
                   {"level", sarif_level(finding.kind->severity)},
                   {"message", {{"text", sarif_message(finding)}}},
                   {"locations", json::array({location})}};
    if (json edits = sarif_fixes(file, finding.fixes); !edits.empty())
        result["fixes"] = std::move(edits);
    if (!finding.fixes.empty())
        result["properties"] = {{"fixes", fixes_json(finding.fixes)}};
    return result;
}

} // namespace

std::string audit_sarif(const fleet_summary_t &summary) {
    json rules = json::array(), found = json::array(), notifications = json::array();
    for (const finding_kind_t &kind : finding_kinds())
        rules.push_back(sarif_rule(kind));
    for (const audited_t &audited : summary.results) {
        for (const finding_t &finding : audited.findings)
            found.push_back(sarif_result(audited.file, finding));
        if (!audited.problem.empty())
            notifications.push_back({{"level", "error"}, {"message", {{"text", audited.problem}}}});
    }
    const json driver = {
        {"name", "infraconvert"}, {"version", INFRACONVERT_VERSION}, {"rules", rules}};
    const json run = {
        {"tool", {{"driver", driver}}},
        {"invocations", json::array({{{"executionSuccessful", notifications.empty()},
                                      {"toolExecutionNotifications", notifications}}})},
        {"results", found}};
    return printed_as_is({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                          {"version", "2.1.0"},
                          {"runs", json::array({run})}});
}

} // namespace infraconvert
