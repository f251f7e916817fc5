#include "ipqosmgr/qosmgrcnv_pipeline.h"

#include "engine/conversion.h"
#include "ipqosmgr/qosmgrcnv_engine.h"
#include "platform/calls.h"

syserr_t qoscnv_run_steps(const char *pipeline, std::span<const qoscnv_step_t> steps) {
    for (const qoscnv_step_t &step : steps) {
        const syserr_t status = engine::guarded(step.run);
        if (status == 0)
            continue;
        if (step.message && step.names_status)
            engine::log(qoscnv_engine, pipeline, "%s: %s\n", step.message,
                        platform::status_text(status));
        else if (step.message)
            engine::log(qoscnv_engine, pipeline, "%s\n", step.message);
        return status;
    }
    return 0;
}
