#!/usr/bin/env bash
# Installs the build into an empty prefix, builds a program in C through pkg-config and one in C++
# through CMake against what stands there, and runs both and the installed command.
#
# usage: install_test.sh BUILD_DIRECTORY
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$here/../..
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
prefix=$place/prefix

$CMAKE --install "$1" --prefix "$prefix" >/dev/null
library=$(dirname "$(find "$prefix" -name libconvertinfraascii.so)")
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")

# The converters log to places of the switch; here they must not depend on whether these exist.
configuration() {
  mkdir -p "$place/$1/ascii"
  printf 'feature telnet\nnpiv enable\n' >"$place/$1/ascii/system.cfg"
  echo "$place/$1"
}
is_converted() {
  printf 'feature telnet\nfeature npiv\n' | diff -u - "$1/ascii/system.cfg"
}

export PKG_CONFIG_PATH=$library/pkgconfig
[ "$($PKG_CONFIG --modversion libconvertinfraascii)" = "$version" ]
$CC $CFLAGS -std=c99 -Wall -Wextra -Wpedantic -Werror "$here/consumer.c" -o "$place/consumer" \
    $($PKG_CONFIG --cflags --libs libconvertinfraascii)
# By its SONAME, so that a later version with the same interface takes this one's place.
readelf -d "$place/consumer" | grep -q "NEEDED.*\[libconvertinfraascii.so.${version%%.*}\]"
LD_LIBRARY_PATH=$library "$place/consumer" "$(configuration from_c)"
is_converted "$place/from_c"

$CMAKE -S "$here/cmake_consumer" -B "$place/build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
$CMAKE --build "$place/build" >/dev/null
"$place/build/consumer" "$(configuration from_cpp)"
is_converted "$place/from_cpp"

if [ -e "$prefix/bin/infraconvert" ]; then
  # The prefix moves, as that of a private install may.
  mv "$prefix" "$place/elsewhere"
  "$place/elsewhere/bin/infraconvert" convert --accept IC041 --from '4.1(2)' --to '5.0(3)' \
      --output "$place/converted.cfg" "$root/examples/switch.cfg" 2>"$place/messages" ||
    { cat "$place/messages"; exit 1; }
  grep -qx 'feature fc-port-security' "$place/converted.cfg"
fi
