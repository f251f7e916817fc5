#!/usr/bin/env bash
# Eight parts made by eight processes are what one run tells, in every format.
#
# usage: parts.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
source "$(dirname "$0")/needs.sh"
cd "$place"
make_fleet 80
for part in 1 2 3 4 5 6 7 8; do
  split -n "l/$part/8" fleet.txt | infraconvert audit --mask --from '4.1(2)' --to '5.0(3)' --jobs 1 \
      --details --format jsonl --files-from - >"parts/$part.jsonl" 2>/dev/null &
done
wait
same_reports parts/?.jsonl
grep -q '80 configurations' merged
