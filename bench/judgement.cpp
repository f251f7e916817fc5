// Reads and judges one conversion: judgement FROM TO ORIGINAL RESULT

#include "meaning/compare.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <iostream>
#include <iterator>

namespace {

std::string contents(const char *path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

int main(int count, char **arguments) {
    if (count < 5) {
        std::cerr << "usage: judgement FROM TO ORIGINAL RESULT\n";
        return 2;
    }
    const std::string_view route[] = {arguments[1], arguments[2]};
    const std::string before = contents(arguments[3]), after = contents(arguments[4]);
    const std::string name = "judgement of " + std::to_string(before.size()) + " bytes";
    benchmark::RegisterBenchmark(name.c_str(), [&](benchmark::State &state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(
                infraconvert::meaning::original_t(before, route[0]).compare(after, route));
    })->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
