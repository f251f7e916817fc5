#include "commands/saving.h"

#include "base/messages.h"
#include "base/quoting.h"

#include <algorithm>

namespace infraconvert {

saving_t::saving_t(std::string save_plan, const job_options_t &options, outputs_t &files)
    : plan_file(std::move(save_plan)), outputs(files) {
    if (plan_file.empty())
        return;
    outputs.expect("--save-plan", plan_file);
    planning.emplace(plan_file);
    for (const service_t *service : services_named(options.services))
        plan.services.emplace_back(service->name);
    plan.keep_going = options.keep_going;
    plan.mend = options.mend;
}

void saving_t::complete(planned_t &planned, const std::string &file,
                        const converted_t *conversion) const {
    if (planning)
        planning->complete(planned, file, conversion);
}

void saving_t::save(std::vector<planned_t> configurations) {
    if (!planning)
        return;
    const auto ready =
        std::count_if(configurations.begin(), configurations.end(), [](const planned_t &planned) {
            return planned.state == planned_state_t::ready;
        });
    plan.configurations = std::move(configurations);
    plan.key_digest = planning->key_digest();
    planning->save([&] { outputs.write(plan_file, plan_text(plan)); });
    const std::string name = quoted_name(plan_file);
    message("the plan is saved in " + name +
            (ready == 0
                 ? "; as it is, it converts nothing"
                 : "; infraconvert convert --plan " + name + " converts " + std::to_string(ready) +
                       " of " + std::to_string(plan.configurations.size())));
}

} // namespace infraconvert
