// The conversions alone, without load and save: in_memory CASES, where each line of the file CASES
// is
//
//     NAME <tab> SERVICE <tab> FROM <tab> TO <tab> DIRECTORY

#include "assoc/assoc_converter.h"
#include "assoc/assoc_engine.h"
#include "fc_port_sec/fcportsec_converter.h"
#include "fwm/fwmcnv_converter.h"
#include "include/libinfraconvertascii.h"
#include "ipqosmgr/qosmgrcnv_4_1_3.h"
#include "npiv/npiv_converter.h"
#include "satmgr/satcnv_converter.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <functional>
#include <sstream>

namespace {

struct case_t {
    std::string name, service, from, to, directory;
};

// A converter for the benchmark: its instance, and its passes for the current pair of releases.
struct converter_t {
    uint32_t service;
    engine::engine_t &engine;
    std::function<syserr_t()> passes;
};

converter_t converter(uint32_t service, const engine::conversion_t &conversion) {
    return {service, conversion.engine, [&] { return engine::route(conversion); }};
}

const converter_t converters[] = {
    converter(SRVUUID_IPQOS_MGR, qoscnv_conversion),
    converter(SRVUUID_PSM, fcportsec_conversion),
    converter(SRVUUID_NPIVP, npiv_conversion),
    converter(SRVUUID_FWM, fwmcnv_conversion),
    {SRVUUID_ASSOC_MGR, assoc_engine, [] { return engine::run_rules(assoc_rules); }},
    converter(SRVUUID_SATMGR, satcnv_conversion),
};

void convert(benchmark::State &state, const case_t &c, const converter_t &converter) {
    engine::engine_t &e = converter.engine;
    engine::read_versions(e, c.from.c_str(), c.to.c_str());
    for (auto _ : state) {
        state.PauseTiming();
        engine::read_ascii_file(e, c.directory.c_str());
        const uint32_t size = e.text->size();
        state.ResumeTiming();
        if (converter.passes() != 0)
            state.SkipWithError("conversion failed");
        state.SetBytesProcessed(state.bytes_processed() + size);
    }
}

} // namespace

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    std::ifstream cases(argc > 1 ? argv[1] : "");
    for (std::string line; std::getline(cases, line);) {
        std::istringstream fields(line);
        case_t c;
        for (std::string *field : {&c.name, &c.service, &c.from, &c.to, &c.directory})
            std::getline(fields, *field, '\t');
        for (const converter_t &converter : converters) {
            if (std::to_string(converter.service) == c.service)
                benchmark::RegisterBenchmark(c.name.c_str(), [c, &converter](auto &state) {
                    convert(state, c, converter);
                })->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
}
