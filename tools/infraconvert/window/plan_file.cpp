#include "window/plan_file.h"

#include "base/digest.h"
#include "base/errors.h"
#include "base/exact_text.h"

#include <nlohmann/json.hpp>

namespace infraconvert {

namespace {

using nlohmann::json;

constexpr const char *kind = "infraconvert plan";
constexpr int version = 1;

plan_t plan_from(const json &document) {
    if (document.at("kind") != kind || document.at("format_version") != version)
        throw input_error_t("it is of another kind or of a later version");
    return {.route = document.at("route"),
            .services = document.at("services"),
            .keep_going = document.at("keep_going"),
            .mend = document.value("mend", ""),
            .path = exact_bytes(document, "path"),
            .input_digest = document.at("input_sha256"),
            .result_digest = document.at("result_sha256")};
}

} // namespace

plan_t plan_of(const converted_t &conversion, const std::string &file, bool keep_going,
               const std::string &mend) {
    plan_t plan = {.route = conversion.route,
                   .services = {},
                   .keep_going = keep_going,
                   .mend = mend,
                   .path = file == standard_stream ? "" : std::filesystem::absolute(file).string(),
                   .input_digest = sha256(*conversion.original),
                   .result_digest = sha256(*conversion.result)};
    for (const step_t &step : conversion.steps)
        plan.services.emplace_back(step.service->name);
    return plan;
}

std::string plan_text(const plan_t &plan) {
    json document = {{"kind", kind},
                     {"format_version", version},
                     {"route", plan.route},
                     {"services", plan.services},
                     {"keep_going", plan.keep_going},
                     {"mend", plan.mend},
                     {"path", plan.path},
                     {"input_sha256", plan.input_digest},
                     {"result_sha256", plan.result_digest}};
    add_exact_bytes(document);
    return document.dump(2, ' ', false, json::error_handler_t::replace) + '\n';
}

plan_t read_plan(const std::string &plan_file) try {
    return plan_from(json::parse(read_file(plan_file)));
} catch (const json::exception &) {
    throw input_error_t(quoted_name(plan_file) +
                        ": not a plan of infraconvert preview --save-plan");
}

void check_input(const plan_t &plan, const std::string &text) {
    if (sha256(text) != plan.input_digest)
        throw input_error_t("the configuration has changed since the plan was made; nothing is "
                            "converted (make a new plan with infraconvert preview --save-plan)");
}

void check_result(const plan_t &plan, const std::string &text) {
    if (sha256(text) != plan.result_digest)
        throw conversion_error_t(
            "the conversion gives another result than when the plan was made, so the "
            "converters are others; nothing is written");
}

} // namespace infraconvert
