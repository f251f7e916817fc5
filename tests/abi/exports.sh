#!/bin/sh
# The library defines exactly the exported names.
#
# usage: exports.sh LIBRARY EXPECTED
set -eu
actual=$(nm -D --defined-only "$1" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | LC_ALL=C sort)
printf '%s\n' "$actual" | diff -u "$2" -
