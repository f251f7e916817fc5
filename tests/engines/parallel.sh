#!/usr/bin/env bash
# Four parts of one fleet under GNU parallel. The first try of one of them is killed in the midst of its work; it is
# tried again, and what comes of it all is what one run tells.
#
# usage: parallel.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
source "$(dirname "$0")/needs.sh"
needs parallel
cd "$place"
make_fleet 60

cat >audit_part <<'TXT'
#!/bin/sh
# The first try of the third part is killed when its part has begun.
if [ "$1" = 3 ] && mkdir tried 2>/dev/null; then
  split -n l/3/4 fleet.txt | head -3 >some.txt
  infraconvert audit --mask --from '4.1(2)' --to '5.0(3)' --details --format jsonl --files-from some.txt | head -c 700 >parts/3.jsonl
  kill -9 $$
fi
split -n "l/$1/4" fleet.txt |
  infraconvert audit --mask --from '4.1(2)' --to '5.0(3)' --details --format jsonl --files-from - >"parts/$1.jsonl"
status=$?
case $status in 1 | 4 | 5) status=0 ;; esac
exit $status
TXT
chmod +x audit_part
parallel --will-cite --jobs 2 --retries 3 --joblog log ./audit_part ::: 1 2 3 4 2>/dev/null
[ -d tried ]
same_reports parts/?.jsonl
grep -q '60 configurations' merged

# Without the second try the report says which part is not whole, and prints nothing.
rm -r tried
parallel --will-cite --jobs 2 ./audit_part ::: 1 2 3 4 2>/dev/null && exit 1
infraconvert report parts/?.jsonl >printed 2>messages && exit 1
grep -q 'parts/3.jsonl' messages
[ ! -s printed ]
