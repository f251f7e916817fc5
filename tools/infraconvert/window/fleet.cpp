#include "window/fleet.h"

#include "audit/audit.h"
#include "audit/fixes.h"
#include "audit/masked_findings.h"
#include "base/digest.h"
#include "base/errors.h"
#include "window/crew.h"

#include <exception>

namespace infraconvert {

namespace {

// One configuration on its way through the judgement: its record, and the fixes that were found.
class examination_t {
  public:
    examination_t(const fleet_t &f, const std::string &file) : fleet(f) { record.file = file; }

    audited_t result() && {
        record.alike = likeness_of(record);
        return std::move(record);
    }

    void run() {
        conversion_request_t request = fleet.request;
        record.route = request.route;
        request.text = read_configuration(record.file);
        request.route = record.route = route_for(*request.text, request.route);
        if (fleet.result || fleet.form_alone)
            look_at_what_is_there(request.text);
        else
            convert(request);
    }

    void fail(const char *problem, int status) {
        const std::string file = record.file;
        const route_t route = record.route;
        record = {};
        record.file = file;
        record.route = route;
        record.state = state_t::unusable;
        record.problem = problem_in_words(problem, status);
        record.problem_status = status;
    }

  private:
    void convert(const conversion_request_t &request) {
        const converted_t conversion = run_conversion(request);
        record.state = conversion.failed()    ? state_t::failed
                       : conversion.changes() ? state_t::changed
                                              : state_t::unchanged;
        add_services(conversion);
        if (fleet.rollback && !conversion.failed())
            return look_back(request, conversion);
        keep(audit(conversion, true));
        const mending::mended_t mended = mend_findings(record.findings, conversion, request);
        finish(conversion, conversion, mended);
    }

    // Converts the result back, and judges the whole way.
    void look_back(const conversion_request_t &there, const converted_t &conversion) {
        conversion_request_t request = there;
        request.text = conversion.result;
        request.route = way_back(there.route);
        const converted_t back = run_conversion(request);
        converted_t whole = conversion;
        whole.result = back.result;
        mending::mended_t mended;
        if (back.failed() && !there.keep_going) {
            record.state = state_t::failed;
            record.verdict = back_fails;
        } else {
            judged_result_t way =
                judge_with_fixes(*conversion.original, *back.result, there_and_back(there.route));
            keep(std::move(way.findings));
            way.findings = record.findings;
            record.verdict = way.verdict();
            mended = std::move(way.mended);
        }
        finish(conversion, whole, mended);
    }

    // A result that was not made here, or the file as it is.
    void look_at_what_is_there(const shared_text_t &text) {
        const shared_text_t result = fleet.form_alone ? text : fleet.result;
        const converted_t both = {.route = record.route,
                                  .original = text,
                                  .result = result,
                                  .script = difference(split_lines(*text), split_lines(*result))};
        record.state = fleet.form_alone ? state_t::checked
                       : both.changes() ? state_t::changed
                                        : state_t::unchanged;
        judged_result_t judged =
            fleet.form_alone ? judged_result_t{judge_form_of(*text, record.route.front()), {}}
                             : judge_with_fixes(*text, *result, record.route);
        keep(std::move(judged.findings));
        finish(both, both, judged.mended);
    }

    void add_services(const converted_t &conversion) {
        for (const step_t &step : conversion.steps) {
            if ((step.changes() || step.failure) &&
                std::find(record.services.begin(), record.services.end(), step.service->name) ==
                    record.services.end())
                record.services.emplace_back(step.service->name);
        }
    }

    // What was agreed on is known by what stands in the lines, before they are masked.
    void keep(std::vector<finding_t> findings) {
        record.findings = std::move(findings);
        if (fleet.agreed)
            fleet.agreed->mark(record.file, record.findings);
    }

    // `judged` has the two texts in which the findings name lines.
    void finish(const converted_t &conversion, const converted_t &judged,
                const mending::mended_t &mended) {
        if (fleet.keep_fixes)
            fleet.keep_fixes(record, mended, *conversion.original);
        if (fleet.describe)
            record.details = fleet.describe(conversion);
        if (fleet.mask) {
            mask_findings(record.findings, judged);
        } else {
            record.input_digest = sha256(*conversion.original);
            record.result_digest = sha256(*conversion.result);
        }
    }

    const fleet_t &fleet;
    audited_t record;
};

} // namespace

audited_t examine(const fleet_t &fleet, const std::string &file) {
    examination_t examination(fleet, file);
    try {
        examination.run();
    } catch (const command_error_t &e) {
        examination.fail(e.what(), e.exit_status);
    } catch (const std::exception &e) {
        examination.fail(e.what(), exit_trouble);
    }
    return std::move(examination).result();
}

void examine_all(const fleet_t &fleet, const std::function<void(const audited_t &)> &take) {
    make_in_order<audited_t>(
        fleet.files.size(), fleet.jobs,
        [&](size_t number) { return examine(fleet, fleet.files[number]); },
        [&](size_t, const audited_t &audited) { take(audited); });
}

} // namespace infraconvert
