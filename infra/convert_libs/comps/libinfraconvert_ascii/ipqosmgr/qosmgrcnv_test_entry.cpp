// A program of its own: runs the QoS converter on the configuration below /bootflash/qoscnv_test,
// from 4.0(1) to 4.1(3) as an upgrade. The downgrade, from 4.1(3) to 4.0(1), has no rule: it loads
// the file and saves it as it is.

#include "include/libinfraconvertascii.h"
#include "platform/calls.h"

#include <cstdio>
#include <string_view>

extern "C" void sysmgrcb_no_sysmgr();

void sysmgrcb_no_sysmgr() {}

int main(int argc, char **argv) {
    puts("Starting qoscnv tests");
    if (argc != 2) {
        puts("Need to specify upgrade or downgrade; aborting");
        return -1;
    }
    const std::string_view direction = argv[1];
    const char *from = "4.0(1)", *to = "4.1(3)";
    if (direction == "downgrade") {
        puts("testing downgrade from 4.1.3 ...");
        from = "4.1(3)";
        to = "4.0(1)";
    } else if (direction == "upgrade") {
        puts("testing upgrade to 4.1.3 ...");
    } else {
        printf("Invalid argument \"%s\"; aborting\n", argv[1]);
        return -1;
    }
    const syserr_t status =
        ipqosmgr_infra_convert_startup("/bootflash/qoscnv_test", "ipqosmgr", to, from);
    printf("Return code is %s\n", platform::status_text(status));
    return 0;
}
