# Bash completion of infraconvert. Where nothing is offered, the shell offers files.

_infraconvert_codes() { infraconvert explain 2>/dev/null | grep -oE "^$1\>"; }

# The releases that matter to the rules.
_infraconvert_releases() {
  infraconvert explain --json 2>/dev/null | grep -oE '[0-9]+\.[0-9]+\([0-9]+\)[A-Z0-9()]*' | sort -u
}

_infraconvert() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local command=${COMP_WORDS[1]} offered=
  # Bash takes "--color=never" for three words.
  if [ "$word" = = ]; then
    word=
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD-2]}
  fi

  local releases='--from --to --via --service --json'
  local conversion="$releases --keep-going --mask --max-size --log --log-dir"
  case $previous in
    --service) offered='all qos fcportsec npiv fwm assoc satmgr' ;;
    --color) offered='auto always never' ;;
    --fail-on) offered='error warning never' ;;
    --format) offered='text json jsonl sarif junit codequality html accept' ;;
    --from | --to | --via)
      # Like names of files, so that the shell quotes their parentheses.
      compopt -o filenames 2>/dev/null
      word=${word#[\'\"]}
      offered=$(_infraconvert_releases) ;;
    --label | --unified | -U | --output | -o | --plan | --save-plan | --log-dir | \
      --report | --fixes | --result | --files-from | --jobs | -j | --max-size) ;;
    --accept) offered=$(_infraconvert_codes 'IC[0-9]+') ;;
    *)
      if [ "$COMP_CWORD" -eq 1 ]; then
        offered='plan preview convert undo audit effects report explain help --help --version -V'
      else
        case $command in
          plan) offered="$releases --mask --jobs --files-from --max-size --help" ;;
          preview) offered="$conversion --unified --label --color --word-diff --explain --rollback --exit-code
                            --save-plan --plan --details --accept --mend --files-from
                            --jobs --help" ;;
          convert) offered="$conversion --output --backup --plan --accept --mend --files-from
                            --jobs --help" ;;
          undo) offered="--plan --json --jobs --help" ;;
          audit) offered="$releases --keep-going --mask --format --details --fail-on --report --result --fixes --rollback --accept
                          --files-from --jobs --max-size --help" ;;
          effects) offered="$releases --keep-going --mask --format --files-from --jobs --max-size --help" ;;
          report) offered='--format --json --details --fail-on --help' ;;
          help) offered='plan preview convert undo audit effects report explain' ;;
          explain) offered="--json --help $(_infraconvert_codes 'IC[A-Z0-9-]+')" ;;
        esac
        # A path is wanted far more often than an option.
        case $command:$word in
          preview: | convert: | undo: | audit: | effects: | report: | preview:[!-]* | convert:[!-]* | undo:[!-]* | \
            audit:[!-]* | effects:[!-]* | report:[!-]*) offered= ;;
        esac
      fi ;;
  esac
  COMPREPLY=($(compgen -W "$offered" -- "$word"))
}

complete -o default -F _infraconvert infraconvert
