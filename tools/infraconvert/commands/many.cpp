#include "commands/many.h"

#include "base/errors.h"
#include "base/interruption.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "commands/progress.h"
#include "window/crew.h"
#include "window/planning.h"

namespace infraconvert {

namespace {

looked_at_t line_of_problem(const std::string &file, const std::string &problem, int status) {
    const planned_t planned = planned_of_problem(without_name(file, problem), status);
    standing_state_t state = state_as_planned(planned);
    state.why = problem;
    state.exit_status = status;
    return {{file, planned, state}};
}

looked_at_t guarded(const with_one_t &with_one, const std::string &file) try {
    uninterrupted_t::last_call();
    return with_one(file);
} catch (const usage_error_t &e) { // with others something was done
    return line_of_problem(file, e.what(), exit_unusable);
} catch (const command_error_t &e) {
    return line_of_problem(file, e.what(), e.exit_status);
} catch (const std::exception &e) {
    return line_of_problem(file, e.what(), exit_trouble);
}

} // namespace

window_report_t with_each(window_report_t report, const std::vector<std::string> &files,
                          size_t jobs, const with_one_t &with_one,
                          const std::function<void(const std::string &details)> &show) {
    std::vector<std::string> others;
    progress_t progress(files.size());
    make_in_order<looked_at_t>(
        files.size(), jobs, [&](size_t index) { return guarded(with_one, files[index]); },
        [&](size_t, looked_at_t looked_at) {
            if (!looked_at.details.empty())
                progress.clear();
            show(looked_at.details);
            if (looked_at.names_other_release)
                others.push_back(looked_at.line.file);
            report.lines.push_back(std::move(looked_at.line));
            progress.step();
        });
    progress.clear();
    if (!others.empty())
        message("warning: " + std::to_string(others.size()) +
                (others.size() == 1 ? " configuration says" : " configurations say") +
                " that another release wrote " + (others.size() == 1 ? "it: " : "them, such as ") +
                quoted_name(others[0]) + " (without --from each is taken by its own word)");
    return report;
}

} // namespace infraconvert
