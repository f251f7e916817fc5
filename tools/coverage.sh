#!/usr/bin/env bash
# usage: tools/coverage.sh [gcovr arguments ...]
#
# Builds the library with counters in build/coverage, runs every test and reports which lines and
# branches of it they reached. Branches that only exceptions take, and those that the compiler knows
# to be never taken, are not counted. Further arguments go to gcovr, such as --html-details
# build/coverage/report.html.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${COVERAGE_BUILD:-build/coverage}
library=infra/convert_libs/comps/libinfraconvert_ascii

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DINFRACONVERT_TESTS=ON \
      -DCMAKE_CXX_FLAGS="--coverage -fprofile-update=atomic -DINFRACONVERT_COVERAGE" >/dev/null
cmake --build "$build" --parallel "$(nproc)" >/dev/null
find "$build" -name '*.gcda' -delete
ctest --test-dir "$build" --parallel "$(nproc)" --output-on-failure | tail -3

report=(gcovr --root . --filter "$library/" --object-directory "$build" "$build/$library"
        --exclude-throw-branches --exclude-unreachable-branches)
"${report[@]}" "$@"
"${report[@]}" --branches | tail -3
