#!/bin/sh
# The formatter has nothing to say against the man pages.
#
# usage: man_pages.sh DIRECTORY
set -eu
for page in "$1"/*; do
    complaints=$(groff -man -Tutf8 -ww "$page" 2>&1 >/dev/null)
    [ -z "$complaints" ] || { echo "$complaints"; exit 1; }
done
