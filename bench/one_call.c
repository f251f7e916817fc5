/* Makes one installer call, and nothing else: one_call DIRECTORY FROM TO SERVICE, where SERVICE is
 * an identifier or 0 for all of them. The peak memory goes to standard error. */
#include "include/libinfraconvertascii.h"

#include <stdlib.h>
#include <string.h>

static void print_peak(void) {
    char line[256];
    FILE *status = fopen("/proc/self/status", "r");
    while (status && fgets(line, sizeof line, status)) {
        if (strncmp(line, "VmHWM:", 6) == 0)
            fprintf(stderr, "%s", line);
    }
    if (status)
        fclose(status);
}

int main(int argc, char **argv) {
    if (argc != 5)
        return 2;
    const infraconvertascii_args_t args = {argv[1], "benchmark", argv[3], argv[2]};
    const uint32_t service = (uint32_t)strtoul(argv[4], NULL, 10);
    convertascii_ret_value_t failed = {0, 0};
    if (service == 0)
        infraconvertascii_startup_all(&args);
    else
        infraconvertascii_startup(service, &failed, &args);
    print_peak();
    return failed.syserr != 0;
}
