// Static Analysis Results Interchange Format 2.1.0, which code review systems read.

#include "reports/findings_json.h"
#include "reports/fingerprints.h"
#include "reports/formats.h"
#include "reports/json_stream.h"

#include <cctype>
#include <map>
#include <set>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

// Readers take 25000 results at most. Up to the first number all results are told; from then on of
// each code so many, so that a rare one shows however often others come, and the rest of a code is
// one result that counts them.
constexpr size_t results_told = 18000, told_of_each_code = 80, most_results = 25000;
static_assert(results_told + std::size(finding_kind_table) * (told_of_each_code + 1) <=
              most_results);
// What could not be looked at is told so often.
constexpr size_t most_notifications = 1000;

const char *sarif_level(severity_t severity) { return severity_name(severity); }

std::string lower_case(std::string text) {
    for (char &c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

json sarif_rule(const finding_kind_t &kind) {
    return {{"id", kind.code},
            {"shortDescription", {{"text", kind.title}}},
            {"fullDescription", {{"text", kind.explanation}}},
            {"help", {{"text", kind.advice}}},
            {"helpUri", std::string(INFRACONVERT_FINDINGS_URI "#") + lower_case(kind.code)},
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

json location_json(const std::string &file, const finding_t &finding) {
    json place = {{"artifactLocation", {{"uri", uri_of(file)}}}};
    if (!finding.before.empty())
        place["region"] = {{"startLine", finding.before[0].number},
                           {"snippet", {{"text", finding.before[0].text}}}};
    json location = {{"physicalLocation", place}};
    if (!finding.place.empty())
        location["logicalLocations"] = json::array({{{"fullyQualifiedName", finding.place}}});
    return location;
}

json sarif_result(const std::string &file, const finding_t &finding,
                  const std::string &fingerprint) {
    json result = {{"ruleId", finding.kind->code},
                   {"level", sarif_level(finding.kind->severity)},
                   {"message", {{"text", sarif_message(finding)}}},
                   {"locations", json::array({location_json(file, finding)})},
                   {"partialFingerprints", {{"finding/v1", fingerprint}}}};
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
json notification(const std::string &problem) {
    return {{"level", "error"}, {"message", {{"text", problem}}}};
}

// Findings with one code that are not told one by one.
struct rest_t {
    std::string file; // the first of the configurations
    finding_t first;
    size_t findings = 0, files = 0;

    json as_json() const {
        const std::string text = std::to_string(findings) + " more findings like this in " +
                                 std::to_string(files) +
                                 " configurations, such as: " + sarif_message(first);
        return {
            {"ruleId", first.kind->code},
            {"level", sarif_level(first.kind->severity)},
            {"message", {{"text", text}}},
            {"locations", json::array({location_json(file, first)})},
            {"occurrenceCount", findings},
            {"partialFingerprints", {{"finding/v1", fingerprints_t("").next(first.kind->code)}}}};
    }
};

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
        fingerprints_t fingerprints(audited.file);
        std::set<const finding_kind_t *> left_out;
        for (const finding_t &finding : audited.findings) {
            const std::string fingerprint = fingerprints.of(finding);
            if (is_to_be_told(finding.kind))
                stream.element(sarif_result(audited.file, finding, fingerprint));
            else
                leave_out(audited.file, finding, left_out.insert(finding.kind).second);
        }
        if (audited.state == state_t::unusable && ++unusable <= most_notifications)
            notifications.push_back(notification(audited.problem));
    }
    void end(const totals_t &) override {
        for (const auto &[kind, rest] : rests)
            stream.element(rest.as_json());
        if (unusable > most_notifications)
            notifications.push_back(notification(std::to_string(unusable - most_notifications) +
                                                 " more configurations could not be looked at"));
        stream.close();
        stream.member("invocations",
                      json::array({{{"executionSuccessful", notifications.empty()},
                                    {"toolExecutionNotifications", notifications}}}));
        stream.close();
        stream.close();
        stream.close();
    }

  private:
    bool is_to_be_told(const finding_kind_t *kind) {
        size_t &of_code = told[kind];
        if (all_told >= results_told && of_code >= told_of_each_code)
            return false;
        all_told++;
        of_code++;
        return true;
    }

    void leave_out(const std::string &file, const finding_t &finding, bool is_first_in_file) {
        const auto [rest, is_new] = rests.try_emplace(finding.kind, rest_t{file, finding});
        rest->second.findings++;
        rest->second.files += is_first_in_file;
    }

    json_stream_t stream;
    size_t all_told = 0, unusable = 0;
    std::map<const finding_kind_t *, size_t> told;
    std::map<const finding_kind_t *, rest_t> rests;
    json notifications = json::array();
};

} // namespace

std::unique_ptr<writer_t> sarif_writer(output_t out) {
    return std::make_unique<sarif_writer_t>(std::move(out));
}

} // namespace infraconvert
