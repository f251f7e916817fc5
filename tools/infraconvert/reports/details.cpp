#include "reports/details.h"

#include "reports/mask.h"

#include <algorithm>

namespace infraconvert {

namespace {

using edit_t = diff_line_t::edit_t;

constexpr size_t context = 3; // unchanged lines around each change

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

// The releases of a hop, where there are several to tell apart.
std::vector<std::string> told_hop(const converted_t &conversion, size_t hop) {
    if (!conversion.has_stops())
        return {};
    const auto &[from, to] = hop_of(conversion.route, hop);
    return {from, to};
}

std::vector<std::string> told_hop(const converted_t &conversion, const script_line_t &line) {
    const bool of_service = line.step >= 0 && line.step != fix_step;
    if (line.edit == line_edit_t::keep || !of_service)
        return {};
    return told_hop(conversion, conversion.steps[static_cast<size_t>(line.step)].hop);
}

std::vector<diff_line_t> diff_of(const converted_t &conversion) {
    const lines_t before = split_lines(*conversion.original);
    const lines_t after = split_lines(*conversion.result);
    const std::vector<bool> shown = shown_lines(conversion.script);
    std::vector<diff_line_t> diff;
    for (size_t i = 0; i < shown.size(); i++) {
        const script_line_t &line = conversion.script[i];
        if (!shown[i]) {
            if (i > 0 && shown[i - 1] && i + 1 < shown.size())
                diff.push_back({edit_t::gap});
            continue;
        }
        const bool added = line.edit == line_edit_t::add, kept = line.edit == line_edit_t::keep;
        diff.push_back(
            {.edit = kept    ? edit_t::keep
                     : added ? edit_t::add
                             : edit_t::remove,
             .before = line.before + 1,
             .after = line.after + 1,
             .text = std::string(without_newline(added ? after[line.after] : before[line.before])),
             .rule = kept ? "" : conversion.rule_of(line),
             .hop = told_hop(conversion, line)});
    }
    return diff;
}

std::vector<service_record_t> services_of(const converted_t &conversion) {
    std::vector<service_record_t> services;
    for (const step_t &step : conversion.steps)
        services.push_back({.name = step.service->name,
                            .rules = step.routing.ids(),
                            .state = step.state(),
                            .words = step.failure ? step.failure->reason : step.routing.words(),
                            .added = step.changed.added,
                            .removed = step.changed.removed,
                            .hop = told_hop(conversion, step.hop)});
    return services;
}

} // namespace

details_t details_of(const converted_t &conversion, bool usable, bool mask) {
    const converted_t shown = shown_conversion(conversion, mask);
    return {services_of(shown), diff_of(shown), effects_of(conversion, usable, mask)};
}

std::vector<meaning::changed_row_t> effects_of(const converted_t &conversion, bool usable,
                                               bool mask) {
    const std::vector<std::string_view> route(conversion.route.begin(), conversion.route.end());
    const bool compares = route.size() > 1 && (usable || !conversion.failed());
    auto rows = compares ? meaning::changed_rows({*conversion.original, route.front()},
                                                 *conversion.result, route)
                         : meaning::rows_of(*conversion.original, route.front());
    if (!mask)
        return rows;
    const mask_t &told = mask_of(conversion);
    for (auto &[row, change] : rows) {
        for (std::string *words : {&row.place, &row.traffic, &row.effect})
            *words = told.message(*words);
    }
    return rows;
}

} // namespace infraconvert
