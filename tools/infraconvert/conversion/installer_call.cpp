// All services run in one state of the library, as on the switch. One that does not end well there
// runs once more in a state of its own: what it says then is its own doing, and not what the
// services before it left behind.

#include "conversion/installer_call.h"

#include "conversion/converter_run.h"

#include <algorithm>

namespace infraconvert {

namespace {

class caller_t {
  public:
    explicit caller_t(const call_t &c) : call(c), text(c.text) {}

    call_result_t run() {
        while (next() < call.services.size())
            run_from_here();
        return std::move(result);
    }

  private:
    size_t next() const { return result.steps.size(); }

    // The services from the next one on, up to one that ends badly.
    void run_from_here() {
        const size_t first = next();
        const converter_run_t together = run_services(call.services.size(), call.wants_logs);
        for (const auto &step : together.steps) {
            if (step.status == 0)
                add({0, "", step.after, ""});
        }
        if (next() == call.services.size())
            return;
        const bool was_alone = next() == first;
        const bool tells_why = call.wants_logs || !together.trouble.empty();
        add_bad(was_alone && tells_why ? together : run_services(next() + 1, true));
    }

    // A fresh state for the services from the next one on, up to number `end`.
    converter_run_t run_services(size_t end, bool wants_logs) {
        converter_run_t run = run_converters({text,
                                              call.releases,
                                              {&call.services[next()], call.services.data() + end},
                                              wants_logs,
                                              call.limit});
        if (call.wants_logs) {
            for (const auto &[name, log] : run.logs)
                result.logs[name] = is_common(name) ? result.logs[name] + log : log;
        }
        return run;
    }

    // True for the log of the front, which goes on from one service to the next.
    bool is_common(const std::string &log_name) const {
        return std::none_of(call.services.begin(), call.services.end(),
                            [&](const service_t *s) { return s->log_name == log_name; });
    }

    // The next service, which ran last in `run`, and began it unless it came back from it.
    void add_bad(const converter_run_t &run) {
        call_step_t step{0, "", text, ""};
        if (!run.trouble.empty()) {
            step.trouble = run.trouble;
        } else {
            step.status = run.steps.back().status;
            step.after = run.steps.back().after;
            const auto log = run.logs.find(call.services[next()]->log_name);
            if (step.status != 0 && log != run.logs.end())
                step.log = log->second;
        }
        add(std::move(step));
    }

    void add(call_step_t step) {
        text = step.after;
        result.steps.push_back(std::move(step));
    }

    const call_t &call;
    shared_text_t text; // after the steps so far
    call_result_t result;
};

} // namespace

call_result_t call_installer(const call_t &call) { return caller_t(call).run(); }

} // namespace infraconvert
