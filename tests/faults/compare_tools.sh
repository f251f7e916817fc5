#!/usr/bin/env bash
# usage: compare_tools.sh ONE_CALL   (build/bench/bench/one_call)
#
# Prints, as a table, what happens to a file that `sed -i`, `perl -pi` and one call of the installer
# change, with faults injected by strace. Needs root for the rows about the owner and the directory.
set -euo pipefail
one_call=$(realpath "$1")
tools=(sed perl installer)
place=$(mktemp -d)
trap 'chmod -R u+rwX "$place"; rm -rf "$place"' EXIT
chmod 755 "$place"
directory=$place/cfg/ascii
file=$directory/system.cfg

# The old text is long enough for several writes of any tool.
fresh() {
  rm -rf "$place/cfg"; mkdir -p "$directory"
  { for i in $(seq 900); do echo "interface Ethernet1/$i"; done; echo "npiv enable"; } >"$file"
  cp "$file" "$place/old"; sed 's/npiv enable/feature npiv/' "$file" >"$place/new"
  chmod 640 "$file"
}

# change TOOL [WRAPPER ...]: lets the tool change the file, under the wrapper.
change() {
  local tool=$1; shift
  case $tool in
    sed) "$@" sed -i 's/npiv enable/feature npiv/' "$file" ;;
    perl) "$@" perl -pi -e 's/npiv enable/feature npiv/' "$file" ;;
    installer) "$@" "$one_call" "$place/cfg" '4.1(2)' '4.1(3)K2(1)' 649 ;;
  esac >/dev/null 2>&1 || true
}

contents() {
  if cmp -s "$file" "$place/old"; then echo old
  elif cmp -s "$file" "$place/new"; then echo new
  elif [ ! -e "$file" ]; then echo gone
  else echo torn; fi
}

yes_or_no() { if "$@"; then echo yes; else echo no; fi; }
inject() { echo strace -f -qq -o /dev/null -e "trace=$1" -e "inject=$1:$2"; }
attribute() { python3 -c 'import os,sys; f=os.getxattr(sys.argv[1], sys.argv[2]); print(f.hex())' "$@" 2>/dev/null || echo none; }
# An access list that also lets user 4321 read.
list=0200000001000600ffffffff02000400e110000004000400ffffffff10000400ffffffff20000000ffffffff
set_attribute() { python3 -c 'import os,sys; os.setxattr(sys.argv[1], sys.argv[2], bytes.fromhex(sys.argv[3]))' "$@"; }

mode() { change "$1"; yes_or_no [ "$(stat -c %a "$file")" = 640 ]; }
owner() { chown 1234:4321 "$file"; change "$1"; yes_or_no [ "$(stat -c %u:%g "$file")" = 1234:4321 ]; }
access_list() {
  set_attribute "$file" system.posix_acl_access $list; change "$1"
  yes_or_no [ "$(attribute "$file" system.posix_acl_access)" = $list ]
}
attributes() {
  set_attribute "$file" user.comment 6b657074; change "$1"
  yes_or_no [ "$(attribute "$file" user.comment)" = 6b657074 ]
}
symbolic_link() {
  mv "$file" "$place/cfg/real"; ln -s ../real "$file"; change "$1"
  yes_or_no [ -L "$file" -a "$(contents)" = new ]
}
hard_link() { ln "$file" "$place/cfg/second"; change "$1"; yes_or_no [ "$file" -ef "$place/cfg/second" ]; }
closed_directory() {
  chown 65534:65534 "$file"; chmod 555 "$directory"
  change "$1" setpriv --reuid 65534 --regid 65534 --clear-groups
  yes_or_no [ "$(contents)" = new ]
}
# Of the file and its directory.
syncs() {
  change "$1" strace -f -y -qq -o "$place/trace" -e trace=fsync,fdatasync
  grep -c "sync([0-9]*<$directory" "$place/trace" || true
}
full_disk() { change "$1" $(inject write error=ENOSPC); contents; }
failed_rename() { change "$1" $(inject rename,renameat,renameat2 error=EIO); contents; }
# The worst that a kill before any of these calls leaves.
kills() {
  local calls=write,rename,renameat,renameat2,unlink,unlinkat,ftruncate,fchmod,fchown,close,fsync
  local when seen=
  for when in $(seq 60); do
    fresh; change "$1" $(inject "$calls" "signal=KILL:when=$when"); seen+=" $(contents)"
  done
  case $seen in
    *torn* | *gone*) echo "$(grep -oE 'torn|gone' <<<"$seen" | sort | uniq -c | awk '{printf "%s%s %s", s, $1, $2; s=", "}') of 60" ;;
    *) echo "old or new, 60 of 60" ;;
  esac
}

rows=("mode kept:mode" "owner kept:owner" "access list kept:access_list"
      "extended attributes kept:attributes" "symbolic link stays:symbolic_link"
      "second hard link stays the same file:hard_link" "works in a directory that takes no file:closed_directory"
      "syncs (file, directory):syncs" "file after a full disk:full_disk"
      "file after a failed rename:failed_rename" "file after a kill:kills")
echo "| | \`sed -i\` | \`perl -pi\` | this library |"
echo "|---|---|---|---|"
for row in "${rows[@]}"; do
  printf '| %s |' "${row%%:*}"
  for tool in "${tools[@]}"; do fresh; printf ' %s |' "$("${row##*:}" "$tool")"; done
  echo
done
