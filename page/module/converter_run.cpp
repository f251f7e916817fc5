// The seam to the converters where there are no processes: one fresh state of the library is a new
// instance of this module, with a memory and files of its own. What a converter does to its
// instance, such as a crash, stays there. instance.js makes the instances.

#include "conversion/converter_run.h"

#include "base/errors.h"

#include <emscripten.h>

namespace {

// Where the run that is at hand puts what comes back; one at a time, for there is one thread.
infraconvert::converter_run_t *answer;
infraconvert::shared_text_t text; // after the steps so far
std::string refusal;              // why there is no instance; empty: there is one

} // namespace

extern "C" {

EMSCRIPTEN_KEEPALIVE void take_step(uint32_t status, const char *bytes, size_t size) {
    const std::string_view after(bytes, size);
    if (after != *text)
        text = std::make_shared<const std::string>(after);
    answer->steps.push_back({status, text});
}

EMSCRIPTEN_KEEPALIVE void take_log(const char *name, const char *bytes, size_t size) {
    answer->logs[name] = {bytes, size};
}

EMSCRIPTEN_KEEPALIVE void take_trouble(const char *what) { answer->trouble = what; }

EMSCRIPTEN_KEEPALIVE void take_refusal(const char *why) { refusal = why; }
}

// Calls those above before it returns.
// clang-format off
EM_JS(void, run_in_fresh_instance,
      (const char *from, const char *to, const uint32_t *services, size_t count,
       const char *bytes, size_t size, bool wants_logs), {
    Module.runConverters({
        from: HEAPU8.slice(from, HEAPU8.indexOf(0, from)), to: HEAPU8.slice(to, HEAPU8.indexOf(0, to)), services: Array.from(HEAPU32.subarray(services >> 2, (services >> 2) + count)),
        text: HEAPU8.slice(bytes, bytes + size), wantsLogs: wants_logs
    });
})
// clang-format on

namespace infraconvert {

converter_run_t run_converters(const call_t &call) {
    std::vector<uint32_t> services;
    for (const service_t *service : call.services)
        services.push_back(service->uuid);
    converter_run_t run;
    answer = &run;
    text = call.text;
    run_in_fresh_instance(call.releases.from.c_str(), call.releases.to.c_str(), services.data(),
                          services.size(), call.text->data(), call.text->size(), call.wants_logs);
    text.reset();
    if (!refusal.empty())
        throw run_error_t(refusal);
    return run;
}

} // namespace infraconvert
