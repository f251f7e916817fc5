# For tests of what others run infraconvert with; sourced. Leaves a test out (status 77) where one of the commands is
# missing, unless nothing may be left out.
needs() {
  local command
  for command in "$@"; do
    command -v "$command" >/dev/null || [ -e "$command" ] || {
      echo "left out: $command is missing; ./dev install-engines installs it"
      [ -z "${INFRACONVERT_NOTHING_LEFT_OUT:-}" ] && exit 77
      exit 1
    }
  done
}
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
infraconvert=$1 source=$2 tests=$2/tests/engines
PATH=$(dirname "$infraconvert"):$PATH

# A fleet of as many configurations, some with findings, one that is not there; fleet.txt lists them.
make_fleet() {
  local i
  mkdir -p fleet parts
  for i in $(seq -w "$1"); do
    case $i in
      *3) cp "$source/examples/switch.cfg" "fleet/$i.cfg" ;;
      *7) printf 'version 4.1(2)\nclass-map voice\n  match cos %d\n' "$((10#$i % 8))" >"fleet/$i.cfg" ;;
      *) printf 'version 4.1(2)\nhostname switch%s\nnpiv enable\n' "$i" >"fleet/$i.cfg" ;;
    esac
  done
  ls fleet/*.cfg >fleet.txt
  rm "fleet/${i}.cfg"
}

# The report of these parts is what one run tells, in every format, but for the time that it was made at. A page holds
# details, so the parts must.
same_reports() {
  local form
  for form in text json jsonl sarif junit codequality html 'json --details' 'text --details'; do
    infraconvert audit --mask --from '4.1(2)' --to '5.0(3)' --files-from fleet.txt --format $form >one 2>one.messages ||
      one=$?
    infraconvert report --format $form "$@" >merged 2>merged.messages || merged=$?
    [ "$one" = 5 ] && [ "$merged" = 5 ] && cmp <(undated one) <(undated merged) &&
      cmp one.messages merged.messages || { echo "$form differs"; cat merged.messages; return 1; }
  done
}
undated() { sed -E 's/20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9:]+Z/DATE/g' "$1"; }
