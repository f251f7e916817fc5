#include "reports/record_json.h"

#include "base/errors.h"
#include "base/exact_text.h"
#include "reports/findings_json.h"
#include "reports/json_document.h"

#include <array>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;
using edit_t = diff_line_t::edit_t;
using meaning::change_t;

constexpr std::array edit_names = {"keep", "remove", "add", "gap"};
constexpr std::array change_names = {"same", "lost", "gained"};

std::string or_empty(const json &document, const std::string &key) {
    const auto found = document.find(key);
    return found == document.end() || found->is_null() ? "" : exact_bytes(document, key);
}

template<typename value_t>
value_t named(const auto &names, const std::string &name, const char *what) {
    for (size_t i = 0; i < names.size(); i++) {
        if (name == names[i])
            return static_cast<value_t>(i);
    }
    throw input_error_t(std::string("no ") + what + ": '" + name + "'");
}

// Only where a route has several.
void add_hop(json &document, const std::vector<std::string> &hop) {
    if (!hop.empty())
        document["hop"] = hop;
}

std::vector<std::string> hop_from(const json &document) {
    return document.value("hop", std::vector<std::string>{});
}

// ---- details

void add_details(json &document, const details_t &details) {
    json services = json::array(), diff = json::array(), rows = json::array();
    for (const service_record_t &service : details.services) {
        services.push_back({{"name", service.name},
                            {"rule", service.rules},
                            {"state", service.state},
                            {"added", service.added},
                            {"removed", service.removed},
                            {"reason", service.words}});
        add_hop(services.back(), service.hop);
    }
    for (const diff_line_t &line : details.diff) {
        diff.push_back({{"edit", edit_names[static_cast<size_t>(line.edit)]},
                        {"before", line.before},
                        {"after", line.after},
                        {"text", line.text},
                        {"rule", line.rule}});
        add_hop(diff.back(), line.hop);
    }
    for (const auto &[row, change] : details.effects)
        rows.push_back({{"place", row.place},
                        {"direction", or_null(row.direction)},
                        {"traffic", row.traffic},
                        {"effect", row.effect},
                        {"change", change_names[static_cast<size_t>(change)]}});
    document["steps"] = services;
    document["diff"] = diff;
    document["effects"] = {{"rows", rows}};
}

details_t details_from(const json &document) {
    details_t details;
    for (const json &service : document.at("steps"))
        details.services.push_back({.name = service.at("name"),
                                    .rules = service.at("rule"),
                                    .state = service.at("state"),
                                    .words = exact_bytes(service, "reason"),
                                    .added = service.at("added"),
                                    .removed = service.at("removed"),
                                    .hop = hop_from(service)});
    for (const json &line : document.at("diff"))
        details.diff.push_back({.edit = named<edit_t>(edit_names, line.at("edit"), "edit"),
                                .before = line.at("before"),
                                .after = line.at("after"),
                                .text = exact_bytes(line, "text"),
                                .rule = line.at("rule"),
                                .hop = hop_from(line)});
    for (const json &each : document.at("effects").at("rows")) {
        meaning::row_t row = {};
        row.place = exact_bytes(each, "place");
        row.direction = or_empty(each, "direction");
        row.traffic = exact_bytes(each, "traffic");
        row.effect = exact_bytes(each, "effect");
        details.effects.push_back(
            {row, named<change_t>(change_names, each.at("change"), "change")});
    }
    return details;
}

// ---- findings

std::vector<evidence_t> lines_from(const json &document) {
    std::vector<evidence_t> lines;
    for (const json &line : document)
        lines.push_back({line.at("number"), exact_bytes(line, "text")});
    return lines;
}

fix_text_t fix_from(const json &document) {
    fix_text_t fix = {.time = named<fix_time_t>(fix_time_names, document.at("place"), "place"),
                      .lines = exact_list(document, "lines"),
                      .restores = exact_list(document, "restores")};
    for (const json &each : document.value("replacements", json::array()))
        fix.replacements.push_back(
            {each.at("line"), each.at("removed"), exact_bytes(each, "text")});
    return fix;
}

finding_t finding_from(const json &document) {
    const std::string code = document.at("code");
    const finding_kind_t *kind = finding_kind_named(code);
    if (!kind)
        throw input_error_t("no finding has the code '" + code +
                            "' here: it was written by another version of infraconvert");
    finding_t finding = {kind, exact_bytes(document, "detail"), lines_from(document.at("before")),
                         lines_from(document.at("after"))};
    for (const json &fix : document.at("fixes"))
        finding.fixes.push_back(fix_from(fix));
    for (const json &choice : document.value("choices", json::array()))
        finding.choices.push_back(fix_from(choice));
    finding.by_hand = or_empty(document, "by_hand");
    finding.place = or_empty(document, "place");
    const json accepted = document.value("accepted", json());
    if (!accepted.is_null())
        finding.accepted = {exact_bytes(accepted, "reason"), accepted.at("until")};
    finding.hop = hop_from(document);
    return finding;
}

// Of a problem only the end of the route may be known.
route_t route_from(const json &document) {
    if (const json &route = document.at("route"); !route.is_null())
        return route;
    route_t route = {or_empty(document, "from")};
    if (const std::string to = or_empty(document, "to"); !to.empty())
        route.push_back(to);
    return route;
}

// What a reader finds wrong, as the error of an input.
template<typename read_t> auto checked(const char *what, read_t read) -> decltype(read()) {
    try {
        return read();
    } catch (const json::exception &e) {
        throw input_error_t(std::string("no ") + what + " of infraconvert audit: " + e.what());
    }
}

} // namespace

json header_json(const header_t &header) {
    json document = {{"kind", header_kind}};
    document.update(document_of("audit"));
    document["tool_version"] = header.tool_version;
    document["date"] = header.date;
    add_route(document, header.route);
    document["via"] = json::array();
    for (size_t i = 1; i + 1 < header.route.size(); i++)
        document["via"].push_back(header.route[i]);
    document["services"] = header.services;
    document["masked"] = header.masked;
    document["keep_going"] = header.keep_going;
    return document;
}

json record_json(const audited_t &audited) {
    json document = {{"path", audited.file},
                     {"state", state_name(audited.state)},
                     {"problem", or_null(audited.problem)}};
    if (!audited.problem.empty())
        document["problem_status"] = audited.problem_status;
    add_route(document, audited.route);
    document["services"] = audited.services;
    if (!audited.verdict.empty())
        document["verdict"] = audited.verdict;
    document["findings"] = findings_json(audited.findings);
    document["alike"] = audited.alike;
    document["digests"] = {{"input", or_null(audited.input_digest)},
                           {"result", or_null(audited.result_digest)}};
    if (audited.details)
        add_details(document, *audited.details);
    add_exact_bytes(document);
    return document;
}

json totals_json(const totals_t &totals) {
    json states = json::object(), codes = json::array();
    for (const auto &[state, number] : totals.states)
        states[state_name(state)] = number;
    for (const auto &[name, code] : totals.codes) {
        codes.push_back(kind_json(*code.kind));
        codes.back().update({{"findings", code.findings},
                             {"open", code.open},
                             {"files", code.files},
                             {"open_files", code.open_files}});
    }
    return {{"count", totals.count},
            {"need_hands", totals.need_hands},
            {"states", states},
            {"codes", codes},
            {"idle_exceptions", totals.idle}};
}

header_t header_from(const json &document) {
    return checked("header", [&] {
        if (document.at("kind") != header_kind || document.at("format_version") != format_version)
            throw input_error_t("it is of another kind or of a later version");
        header_t header = {.tool_version = document.at("tool_version"),
                           .date = document.at("date"),
                           .route = {or_empty(document, "from")},
                           .services = document.at("services"),
                           .masked = document.at("masked"),
                           .keep_going = document.value("keep_going", false)};
        for (const json &release : document.at("via"))
            header.route.push_back(release);
        if (const std::string to = or_empty(document, "to"); !to.empty())
            header.route.push_back(to);
        return header;
    });
}

audited_t record_from(const json &document) {
    return checked("record", [&] {
        const std::string state = document.at("state");
        if (!state_named(state))
            throw input_error_t("no state: '" + state + "'");
        audited_t audited = {};
        audited.file = exact_bytes(document, "path");
        audited.state = *state_named(state);
        audited.problem = or_empty(document, "problem");
        audited.problem_status = document.value("problem_status", 0);
        audited.route = route_from(document);
        audited.services = document.at("services");
        audited.verdict = or_empty(document, "verdict");
        for (const json &finding : document.at("findings"))
            audited.findings.push_back(finding_from(finding));
        audited.alike = document.at("alike");
        audited.input_digest = or_empty(document.at("digests"), "input");
        audited.result_digest = or_empty(document.at("digests"), "result");
        if (document.contains("diff"))
            audited.details = details_from(document);
        return audited;
    });
}

} // namespace infraconvert
