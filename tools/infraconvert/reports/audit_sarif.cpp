// Static Analysis Results Interchange Format 2.1.0, which code review systems read.

#include "reports/findings_json.h"
#include "reports/formats.h"
#include "reports/json_stream.h"

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
    if (finding.accepted)
        result["suppressions"] =
            json::array({{{"kind", "external"}, {"justification", finding.accepted->reason}}});
    return result;
}

// What could not be looked at.
json notification(const audited_t &audited) {
    return {{"level", "error"}, {"message", {{"text", audited.problem}}}};
}

class sarif_writer_t : public writer_t {
  public:
    explicit sarif_writer_t(output_t out) : stream(std::move(out)) {}

    void begin(const header_t &header) override {
        json rules = json::array();
        for (const finding_kind_t &kind : finding_kinds())
            rules.push_back(sarif_rule(kind));
        stream.open('{');
        stream.member("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
        stream.member("version", "2.1.0");
        stream.open("runs", '[');
        stream.open('{');
        stream.member(
            "tool",
            {{"driver",
              {{"name", "infraconvert"}, {"version", header.tool_version}, {"rules", rules}}}});
        stream.open("results", '[');
    }
    void add(const audited_t &audited) override {
        for (const finding_t &finding : audited.findings)
            stream.element(sarif_result(audited.file, finding));
        if (audited.state == state_t::unusable)
            notifications.push_back(notification(audited));
    }
    void end(const totals_t &) override {
        stream.close();
        stream.member("invocations",
                      json::array({{{"executionSuccessful", notifications.empty()},
                                    {"toolExecutionNotifications", notifications}}}));
        stream.close();
        stream.close();
        stream.close();
    }

  private:
    json_stream_t stream;
    json notifications = json::array();
};

} // namespace

std::unique_ptr<writer_t> sarif_writer(output_t out) {
    return std::make_unique<sarif_writer_t>(std::move(out));
}

} // namespace infraconvert
