#!/bin/sh
# The QoS converter's test program, as far as it gets without /bootflash: test_program.sh PROGRAM
program=$1 failed=0

# expect STATUS OUTPUT ARGUMENT...
expect() {
    wanted="$1 Starting qoscnv tests
$2"
    shift 2
    output=$("$program" "$@")
    told="$? $output"
    [ "$told" = "$wanted" ] || { printf '%s: %s\n' "$*" "$told"; failed=1; }
}

no_file="Return code is error 0xffffffff"
expect 255 "Need to specify upgrade or downgrade; aborting"
expect 255 "Need to specify upgrade or downgrade; aborting" upgrade extra
expect 255 'Invalid argument "UPGRADE"; aborting' UPGRADE
expect 0 "testing upgrade to 4.1.3 ...
$no_file" upgrade
expect 0 "testing downgrade from 4.1.3 ...
$no_file" downgrade
exit $failed
