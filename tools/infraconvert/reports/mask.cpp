#include "reports/mask.h"

#include "secrets/masked_text.h"

namespace infraconvert {

converted_t shown_conversion(converted_t conversion, bool mask) {
    if (!mask)
        return conversion;
    const mask_t told = mask_of(conversion);
    conversion.original = std::make_shared<const std::string>(masked_text(*conversion.original));
    conversion.result = std::make_shared<const std::string>(masked_text(*conversion.result));
    conversion.masked = true;
    if (conversion.failed()) {
        for (shared_text_t &stage : conversion.stages)
            stage = std::make_shared<const std::string>(masked_text(*stage));
    }
    for (step_t &step : conversion.steps) {
        if (!step.failure)
            continue;
        step.failure->reason = told.message(step.failure->reason);
        step.failure->log_line = told.logs(step.failure->log_line);
    }
    return conversion;
}

} // namespace infraconvert
