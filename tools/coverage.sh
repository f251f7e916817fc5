#!/usr/bin/env bash
# usage: tools/coverage.sh
#
# Builds the library with counters in build/coverage, runs its tests and reports what they reached: lines,
# branches, and of the conditions of each decision how many were shown to change its outcome alone
# (MC/DC). Then the places of the conditions that were not. The tests of the command do not count: how it replaces
# files is tested by tests/faults/replacement_test.cpp.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${COVERAGE_BUILD:-build/coverage}
library=infra/convert_libs/comps/libinfraconvert_ascii
counters="-fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc -DINFRACONVERT_COVERAGE"

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DINFRACONVERT_TESTS=ON -DCMAKE_C_COMPILER=clang-19 \
      -DCMAKE_CXX_COMPILER=clang++-19 -DCMAKE_C_FLAGS="$counters" -DCMAKE_CXX_FLAGS="$counters" >/dev/null
cmake --build "$build" --parallel "$(nproc)" >/dev/null
build=$(realpath "$build")
rm -rf "$build/profiles"
# A few files for each program: its processes add to them when they end.
LLVM_PROFILE_FILE="$build/profiles/%4m.profraw" \
  ctest --test-dir "$build" --parallel "$(nproc)" --output-on-failure | tail -3
llvm-profdata-19 merge "$build"/profiles/*.profraw -o "$build/all.profdata"

# The shared library, and each program that the library's objects are part of.
objects=("$build/$library/libconvertinfraascii.so")
for program in "$build"/tests/engine_test "$build"/tests/faults/*_test "$build"/fuzz/fuzz_*; do
  [ -f "$program" ] && [ -x "$program" ] && objects+=(-object "$program")
done
llvm-cov-19 report --show-mcdc-summary --instr-profile "$build/all.profdata" "${objects[@]}" "$library"
llvm-cov-19 export --instr-profile "$build/all.profdata" "${objects[@]}" "$library" |
  tools/coverage_gaps.py
