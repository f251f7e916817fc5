#!/usr/bin/env bash
# Every command and option that the help of infraconvert shows, and every service, stands in the
# completions and in the man page.
#
# usage: words.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
infraconvert=$1
source "$2/packaging/completions/infraconvert.bash"
zsh_completion=$(<"$2/packaging/completions/_infraconvert")
man_page=$(sed 's/\\-/-/g' "$2/docs/man/infraconvert.1")
status=0

missing() {
  echo "$1 lacks $2"
  status=1
}

# What bash offers for the words given; the last one is being typed.
offered() {
  COMP_WORDS=(infraconvert "$@") COMP_CWORD=$# COMPREPLY=()
  _infraconvert
  printf '%s\n' "${COMPREPLY[@]}"
}

check() {
  local words=("$@") word=${*: -1} in_zsh
  case $word in --*) in_zsh=$word ;; *) in_zsh="'$word:" ;; esac
  grep -qxe "$word" <<<"$(offered "$@")" || missing "bash completion" "${words[*]}"
  grep -qFe "$in_zsh" <<<"$zsh_completion" || missing "zsh completion" "${words[*]}"
  grep -qFe "$word" <<<"$man_page" || missing "man page" "${words[*]}"
}

options() { grep -oE '^  (-., *)?--[a-z-]+' | grep -oE -e '--[a-z-]+' | sort -u; }
commands=$("$infraconvert" --help | sed -n '/^Commands:/,$s/^  \([a-z]\+\).*/\1/p')
[ -n "$commands" ]

for option in $("$infraconvert" --help | options); do check "$option"; done
for command in $commands; do
  check "$command"
  [ "$command" != help ] || continue # its help is that of the program
  for option in $("$infraconvert" "$command" --help | options); do check "$command" "$option"; done
done
for service in $("$infraconvert" plan --from '4.1(2)' --to '4.1(3)' | awk 'NR > 1 { print $1 }'); do
  grep -qx "$service" <<<"$(offered plan --service "$service")" || missing "bash completion" "$service"
  grep -qE "\(all .*\<$service\>" <<<"$zsh_completion" || missing "zsh completion" "$service"
  grep -qE "^\.BR? $service\>" <<<"$man_page" || missing "man page" "$service"
done
formats=$({ "$infraconvert" audit --format ? 2>&1 || true; } | sed -n 's/.*there is no format[^:]*: //p' | sed 's/,//g; s/ or / /')
[ -n "$formats" ]
for format in $formats; do
  offered audit --format "$format" | grep -qx "$format" || missing "bash completion" "$format"
  grep -qE "\((text .*)?\<$format\>" <<<"$zsh_completion" || missing "zsh completion" "$format"
  grep -qE "^\.BR? $format\>" <<<"$man_page" || missing "man page" "$format"
done
exit $status
