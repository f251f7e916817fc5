#include "reports/mask.h"

namespace infraconvert {

converted_t shown_conversion(converted_t conversion, bool mask) {
    if (!mask)
        return conversion;
    const std::shared_ptr<masked_texts_t> texts = conversion.masked_texts;
    const mask_t &told = mask_of(conversion);
    conversion.original = texts->masked(conversion.original);
    conversion.result = texts->masked(conversion.result);
    conversion.masked = true;
    conversion.masked_texts = std::make_shared<masked_texts_t>();
    if (conversion.failed()) {
        for (shared_text_t &stage : conversion.stages)
            stage = texts->masked(stage);
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
