#include "window/fleet.h"

#include "audit/audit.h"
#include "audit/fixes.h"
#include "audit/masked_findings.h"
#include "base/errors.h"
#include "window/crew.h"

#include <exception>

namespace infraconvert {

namespace {

void mark_agreed(const fleet_t &fleet, audited_t &audited) {
    if (fleet.agreed)
        fleet.agreed->mark(audited.file, audited.findings);
}

// Converts the result back, and judges the whole way.
mending::mended_t look_back(const fleet_t &fleet, const conversion_request_t &there,
                            const converted_t &conversion, audited_t &audited) {
    conversion_request_t request = there;
    request.text = conversion.result;
    request.route = way_back(there.route);
    const converted_t back = run_conversion(request);
    if (back.failed() && !there.keep_going) {
        audited.failed = true;
        audited.verdict = "not reversible: the way back fails";
        return {};
    }
    judged_result_t way =
        judge_with_fixes(*conversion.original, *back.result, there_and_back(there.route));
    audited.verdict = way.verdict();
    audited.findings = std::move(way.findings);
    mark_agreed(fleet, audited);
    if (fleet.mask) {
        converted_t whole = conversion;
        whole.result = back.result;
        mask_findings(audited.findings, whole);
    }
    return std::move(way.mended);
}

// A result that was not made here, or the file as it is.
void judge_what_is_there(const fleet_t &fleet, const shared_text_t &text, audited_t &audited) {
    const shared_text_t result = fleet.form_alone ? text : fleet.result;
    const converted_t both = {.route = audited.route,
                              .original = text,
                              .result = result,
                              .script = difference(split_lines(*text), split_lines(*result))};
    audited.form_alone = fleet.form_alone;
    audited.changed = both.changes();
    judged_result_t judged = fleet.form_alone
                                 ? judged_result_t{judge_form_of(*text, audited.route.front()), {}}
                                 : judge_with_fixes(*text, *result, audited.route);
    audited.findings = std::move(judged.findings);
    mark_agreed(fleet, audited);
    if (fleet.mask)
        mask_findings(audited.findings, both);
    if (fleet.keep_fixes && !judged.mended.fixes.empty())
        fleet.keep_fixes(audited, judged.mended);
    if (fleet.describe)
        audited.details = fleet.describe(audited, both);
}

void look_at(const fleet_t &fleet, audited_t &audited) try {
    conversion_request_t request = fleet.request;
    audited.route = request.route;
    request.text = read_configuration(audited.file);
    request.route = audited.route = route_for(*request.text, request.route);
    if (fleet.result || fleet.form_alone)
        return judge_what_is_there(fleet, request.text, audited);
    const converted_t conversion = run_conversion(request);
    audited.failed = conversion.failed();
    audited.changed = conversion.changes();
    for (const step_t &step : conversion.steps) {
        if (step.changes() || step.failure)
            audited.services.emplace_back(step.service->name);
    }
    mending::mended_t mended;
    if (fleet.rollback && !audited.failed) {
        mended = look_back(fleet, request, conversion, audited);
    } else {
        audited.findings = audit(conversion, true);
        mark_agreed(fleet, audited);
        mended = mend_findings(audited.findings, conversion, request);
        if (fleet.mask)
            mask_findings(audited.findings, conversion);
    }
    if (fleet.keep_fixes && !mended.fixes.empty())
        fleet.keep_fixes(audited, mended);
    if (fleet.describe)
        audited.details = fleet.describe(audited, conversion);
} catch (const command_error_t &e) {
    audited.problem = e.what();
    audited.problem_status = e.exit_status;
} catch (const std::exception &e) {
    audited.problem = e.what();
    audited.problem_status = exit_trouble;
}

} // namespace

const char *audited_t::state() const {
    if (!problem.empty())
        return "unusable";
    if (failed)
        return "failed";
    if (form_alone)
        return "checked";
    return changed ? "changed" : "unchanged";
}

int audited_t::exit_status() const {
    if (!problem.empty())
        return problem_status;
    if (failed)
        return exit_failed;
    return count_findings(findings).errors > 0 ? exit_findings : exit_done;
}

std::vector<audited_t> audit_all(const fleet_t &fleet) {
    std::vector<audited_t> results;
    const auto make = [&](size_t number) {
        audited_t audited;
        audited.file = fleet.files[number];
        look_at(fleet, audited);
        return audited;
    };
    make_in_order<audited_t>(fleet.files.size(), fleet.jobs, make,
                             [&](size_t number, audited_t audited) {
                                 results.push_back(std::move(audited));
                                 if (fleet.progress)
                                     fleet.progress(number + 1);
                             });
    return results;
}

} // namespace infraconvert
