#!/usr/bin/env bash
# Runs tests of a page under Node; leaves them out (status 77) where the browser or Node is missing.
cd "$(dirname "$0")" || exit 1
left_out() {
  echo "left out: $1 is missing; ./dev install-page installs what the tests of the pages need"
  [ -z "${INFRACONVERT_NOTHING_LEFT_OUT:-}" ] && exit 77
  exit 1
}
command -v node >/dev/null || left_out node
command -v chromium >/dev/null || command -v chromium-headless-shell >/dev/null || left_out chromium
[ -d node_modules/playwright-core ] || left_out playwright-core
exec node --test "$@"
