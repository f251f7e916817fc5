#!/usr/bin/env bash
# The hook as a repository of configurations uses it.
#
# usage: pre_commit.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
source "$(dirname "$0")/needs.sh"
needs git pre-commit
cd "$place"
export PRE_COMMIT_HOME=$place/home GIT_CONFIG_GLOBAL=$place/gitconfig
git config --global user.name test
git config --global user.email test@example.org
git init --quiet hooks
cp "$source/.pre-commit-hooks.yaml" hooks
git -C hooks add -A
git -C hooks commit --quiet -m hooks

git init --quiet site
cd site
cat >.pre-commit-config.yaml <<TXT
repos:
  - repo: ../hooks
    rev: $(git -C ../hooks rev-parse HEAD)
    hooks:
      - id: infraconvert-audit
        args: [--from, 4.1(2), --to, 5.0(3)]
TXT
printf 'version 4.1(2)\nnpiv enable\n' >good.cfg
git add -A
pre-commit run --all-files >/dev/null
cp "$source/examples/switch.cfg" bad.cfg
git add -A
pre-commit run --all-files >told && exit 1
grep -q 'bad.cfg' told
! grep -q mERrhUnR told
