#!/usr/bin/env bash
# run.sh TEST [PAGE]: runs a test under Node; leaves it out (status 77) where the browser, Node or the page is missing.
cd "$(dirname "$0")" || exit 1
left_out() {
  echo "left out: $1 is missing; ./dev $2"
  [ -z "${INFRACONVERT_NOTHING_LEFT_OUT:-}" ] && exit 77
  exit 1
}
install="install-page installs what the tests of the pages need"
command -v node >/dev/null || left_out node "$install"
command -v chromium >/dev/null || command -v chromium-headless-shell >/dev/null || left_out chromium "$install"
[ -d node_modules/playwright-core ] || left_out playwright-core "$install"
[ -z "${2:-}" ] || [ -f "$2" ] || left_out infraconvert.html "page builds it"
exec node --test "$1"
