#include "window/plan.h"

#include "base/errors.h"
#include "base/exact_text.h"
#include "base/files.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

constexpr const char *kind = "infraconvert plan";
constexpr int version = 2; // 1 held one configuration, with digests that confirm a guess

constexpr struct {
    planned_state_t state;
    const char *name;
} states[] = {{planned_state_t::ready, "ready"},       {planned_state_t::unchanged, "unchanged"},
              {planned_state_t::refused, "refused"},   {planned_state_t::failed, "failed"},
              {planned_state_t::unusable, "unusable"}, {planned_state_t::blocked, "blocked"}};

planned_state_t state_named(const std::string &name) {
    for (const auto &each : states) {
        if (name == each.name)
            return each.state;
    }
    throw input_error_t("a configuration is in no state that there is");
}

json agreed_json(const std::vector<agreed_t> &agreed) {
    json list = json::array();
    for (const agreed_t &each : agreed)
        list.push_back({{"code", each.code},
                        {"findings", each.findings},
                        {"reason", each.reason},
                        {"until", each.until}});
    return list;
}

json planned_json(const planned_t &planned) {
    return {{"path", planned.path},
            {"state", state_name(planned.state)},
            {"problem", planned.problem},
            {"route", planned.route},
            {"rules", planned.rules},
            {"failed_services", planned.failed_services},
            {"findings",
             {{"errors", planned.findings.errors},
              {"warnings", planned.findings.warnings},
              {"notes", planned.findings.notes},
              {"agreed", planned.findings.agreed}}},
            {"agreed", agreed_json(planned.agreed)},
            {"refused", planned.refused},
            {"mended", planned.mended},
            {"input_digest", planned.input_digest},
            {"result_digest", planned.result_digest}};
}

std::vector<agreed_t> agreed_from(const json &list) {
    std::vector<agreed_t> agreed;
    for (const json &each : list)
        agreed.push_back(
            {each.at("code"), exact_bytes(each, "reason"), each.at("until"), each.at("findings")});
    return agreed;
}

planned_t planned_from(const json &entry) {
    const json &count = entry.at("findings");
    planned_t planned = {.path = exact_bytes(entry, "path"),
                         .state = state_named(entry.at("state")),
                         .problem = exact_bytes(entry, "problem"),
                         .route = entry.at("route"),
                         .rules = entry.at("rules"),
                         .failed_services = entry.at("failed_services"),
                         .findings = {count.at("errors"), count.at("warnings"), count.at("notes"),
                                      count.at("agreed")},
                         .agreed = agreed_from(entry.at("agreed")),
                         .refused = entry.at("refused"),
                         .mended = entry.at("mended"),
                         .input_digest = entry.at("input_digest"),
                         .result_digest = entry.at("result_digest")};
    if (planned.state == planned_state_t::ready && planned.route.size() < 2)
        throw input_error_t("a configuration has no releases");
    return planned;
}

plan_t plan_from(const json &document) {
    if (document.at("kind") != kind)
        throw input_error_t("it is something else");
    if (document.at("format_version") != version)
        throw input_error_t("it is a plan of another version of infraconvert");
    plan_t plan = {.services = document.at("services"),
                   .keep_going = document.at("keep_going"),
                   .mend = document.at("mend"),
                   .key_digest = document.at("key_digest"),
                   .configurations = {}};
    for (const json &entry : document.at("configurations"))
        plan.configurations.push_back(planned_from(entry));
    return plan;
}

input_error_t unusable_plan(const std::string &file, const std::string &why) {
    return input_error_t(quoted_name(file) + ": not a plan that can be used: " + why +
                         "; make it with infraconvert preview --save-plan");
}

} // namespace

const char *state_name(planned_state_t state) {
    return std::find_if(std::begin(states), std::end(states),
                        [&](const auto &each) { return each.state == state; })
        ->name;
}

std::string plan_text(const plan_t &plan) {
    json document = {{"kind", kind},
                     {"format_version", version},
                     {"services", plan.services},
                     {"keep_going", plan.keep_going},
                     {"mend", plan.mend},
                     {"key_digest", plan.key_digest},
                     {"configurations", json::array()}};
    for (const planned_t &planned : plan.configurations)
        document["configurations"].push_back(planned_json(planned));
    add_exact_bytes(document);
    return dumped(document, 2) + '\n';
}

plan_t read_plan(const std::string &plan_file) {
    const std::string text = read_file(plan_file);
    try {
        return plan_from(json::parse(text));
    } catch (const json::exception &) {
        throw unusable_plan(plan_file, "it is something else, or only a part of one");
    } catch (const input_error_t &e) {
        throw unusable_plan(plan_file, e.what());
    }
}

} // namespace infraconvert
