#!/bin/sh
# The programs look for libraries in full paths and beside themselves only: an empty or relative entry is the current
# directory, where anybody may have put a library.
#
# usage: runpath.sh PROGRAM ...
set -eu
for program in "$@"; do
  readelf -d "$program" >/dev/null
  readelf -d "$program" | sed -n 's/.*(R\(UN\)\?PATH).*\[\(.*\)\]/\2/p' | tr : '\n' |
    grep -vE '^(/|\$ORIGIN(/|$))' | sed "s|.*|$program looks in \"&\"|"
done | { ! grep .; }
