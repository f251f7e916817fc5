#include "reports/findings_json.h"

#include "reports/json_document.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

json accepted_json(const finding_t &finding) {
    if (!finding.accepted)
        return nullptr;
    return {{"reason", finding.accepted->reason}, {"until", finding.accepted->until}};
}

json lines_json(const std::vector<evidence_t> &lines) {
    json list = json::array();
    for (const evidence_t &line : lines)
        list.push_back({{"number", line.number}, {"text", line.text}});
    return list;
}

} // namespace

json kind_json(const finding_kind_t &kind) {
    return {{"code", kind.code},
            {"severity", severity_name(kind.severity)},
            {"title", kind.title},
            {"explanation", kind.explanation},
            {"advice", kind.advice}};
}

json fixes_json(const std::vector<fix_text_t> &fixes) {
    json list = json::array();
    for (const fix_text_t &fix : fixes) {
        list.push_back({{"place", fix_time_names[static_cast<size_t>(fix.time)]},
                        {"lines", fix.lines},
                        {"restores", fix.restores}});
        for (const replacement_t &each : fix.replacements)
            list.back()["replacements"].push_back(
                {{"line", each.line}, {"removed", each.removed}, {"text", each.text}});
    }
    return list;
}

json findings_json(const std::vector<finding_t> &findings) {
    json list = json::array();
    for (const finding_t &finding : findings) {
        list.push_back({{"code", finding.kind->code},
                        {"severity", severity_name(finding.kind->severity)},
                        {"title", finding.kind->title},
                        {"detail", finding.detail},
                        {"before", lines_json(finding.before)},
                        {"after", lines_json(finding.after)},
                        {"place", finding.place},
                        {"accepted", accepted_json(finding)},
                        {"fixes", fixes_json(finding.fixes)},
                        {"by_hand", or_null(finding.by_hand)}});
        if (!finding.choices.empty())
            list.back()["choices"] = fixes_json(finding.choices);
        if (!finding.hop.empty())
            list.back()["hop"] = finding.hop;
    }
    return list;
}

std::string kind_document(const finding_kind_t &kind) {
    json document = document_of("explain");
    document["finding"] = kind_json(kind);
    return printed(document);
}

std::string kind_document(const retired_kind_t &kind) {
    json document = document_of("explain");
    document["finding"] = {{"code", kind.code},
                           {"severity", nullptr},
                           {"title", kind.title},
                           {"explanation", kind.reason},
                           {"advice", ""}};
    return printed(document);
}

} // namespace infraconvert
