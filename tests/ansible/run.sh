#!/usr/bin/env bash
# The collection as its users have it: built, installed, documented, and played on this machine.
#
# usage: run.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
source "$(dirname "$0")/../engines/needs.sh"
needs ansible-playbook
export LC_ALL=C.UTF-8 ANSIBLE_HOME=$place/home ANSIBLE_LOCAL_TEMP=$place/tmp ANSIBLE_REMOTE_TEMP=$place/tmp \
       ANSIBLE_COLLECTIONS_PATH=$place/collections ANSIBLE_NOCOLOR=1 ANSIBLE_LOCALHOST_WARNING=false
ansible-galaxy collection build --output-path "$place" "$2/packaging/ansible" >/dev/null
ansible-galaxy collection install --offline -p "$ANSIBLE_COLLECTIONS_PATH" "$place"/*.tar.gz >/dev/null
ansible-doc infraconvert.switch.infraconvert >"$place/doc"
grep -q 'takes a conversion in place back' "$place/doc"

mkdir -p "$place/site/ascii"
cp "$2/examples/switch.cfg" "$place/site/ascii/system.cfg"
ansible-playbook -vvv --diff -e "site=$place executable=$1 original=$2/examples/switch.cfg" \
    "$2/tests/ansible/playbook.yml" >"$place/log" 2>&1 || { tail -30 "$place/log"; exit 1; }

# Results, differences and logs say what changes, and nothing that is secret.
grep -q '^+feature npiv' "$place/log"
! grep -nE '8b1a9953c4611296|mERrhUnR|2c public' "$place/log"
