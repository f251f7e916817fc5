#!/usr/bin/env bash
# usage: fuzz/run.sh [SECONDS] [TARGET]
#
# Fuzzes every target, or one, each for SECONDS (60), under the address and undefined-behaviour
# sanitizers, and prints executions and covered edges. The inputs that were found to matter stay in
# build/fuzz/corpus for the next run; a finding stays in build/fuzz/findings, and belongs into
# fuzz/regressions/TARGET once it is mended.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
targets=(${2:-npiv fcportsec fwm satmgr assoc qos engine meaning mask plan exceptions})
build=${FUZZ_BUILD:-build/fuzz}
[ -w /dev/shm ] && export TMPDIR=/dev/shm

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DINFRACONVERT_TOOLS=ON -DINFRACONVERT_FUZZ=ON \
      -DCMAKE_CXX_COMPILER="${CLANGXX:-clang++}" \
      -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all" >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target "${targets[@]/#/fuzz_}" >/dev/null
python3 fuzz/seeds.py "$build/seeds"

status=0
for target in "${targets[@]}"; do
  mkdir -p "$build/corpus/$target" "$build/findings" "fuzz/regressions/$target"
  log=$build/$target.log
  arguments=(-max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -max_len=8192
             -print_final_stats=1 -artifact_prefix="$build/findings/$target-")
  [[ $target =~ ^(engine|mask|plan|exceptions)$ ]] || arguments+=(-dict="$build/seeds/keywords")
  if ! "$build/fuzz/fuzz_$target" "${arguments[@]}" "$build/corpus/$target" "$build/seeds/$target" \
       "fuzz/regressions/$target" 2>"$log" >/dev/null; then
    status=1
    echo "$target: finding, see $log"
    grep -m1 -E 'ERROR|SUMMARY|broken claim|runtime error' "$log" || true
  fi
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  edges=$(grep -o 'cov: [0-9]*' "$log" | tail -1)
  echo "$target: ${seconds} s, ${executions:-?} executions, ${edges:-cov: ?} edges"
done
exit $status
