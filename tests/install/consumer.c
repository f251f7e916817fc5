/* Converts the NPIV lines of the configuration below its argument. */

#include <libinfraconvertascii.h>

int main(int argc, char **argv) {
    infraconvertascii_args_t args = {0, "package", "5.0(3)", "4.1(2)"};
    convertascii_ret_value_t result = {0, 0};
    args.path = argc > 1 ? argv[1] : "";
    npiv_debug = 0;
    infraconvertascii_startup(SRVUUID_NPIVP, &result, &args);
    return result.syserr == 0 ? 0 : 1;
}
