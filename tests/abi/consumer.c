/* A C program that uses every exported name, as an installer would. */

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <libinfraconvertascii.h>

static int failures = 0;

static void check(int holds, const char *what) {
    if (!holds) {
        fprintf(stderr, "does not hold: %s\n", what);
        failures++;
    }
}

#define CHECK(condition) check((condition) != 0, #condition)

static void check_registry(void) {
    static const uint32_t order[] = {SRVUUID_IPQOS_MGR, SRVUUID_PSM,       SRVUUID_NPIVP,
                                     SRVUUID_FWM,       SRVUUID_ASSOC_MGR, SRVUUID_SATMGR};
    const convertascii_startup_fn starts[] = {
        ipqosmgr_infra_convert_startup, fcportsec_infra_convert_startup,
        npiv_infra_convert_startup,     fwm_infra_convert_startup,
        assoc_infra_convert_startup,    satmgr_infra_convert_startup};
    size_t i;
    for (i = 0; i < sizeof order / sizeof *order; i++) {
        CHECK(infra_convertascii_startup_table[i].uuid == order[i]);
        CHECK(infra_convertascii_startup_table[i].fn == starts[i]);
        CHECK(is_uuid_in_convertascii_startup_table(order[i]) == 1);
    }
    CHECK(infra_convertascii_startup_table[i].uuid == 0);
    CHECK(infra_convertascii_startup_table[i].fn == NULL);
    CHECK(is_uuid_in_convertascii_startup_table(0) == 0);
    CHECK(is_uuid_in_convertascii_startup_table(474) == 0);
}

static void check_compare(const char *from, const char *to, int expected) {
    syserr_t error = 7;
    check(infraconvertascii_compare_versions(from, to, &error) == expected, from);
    CHECK(error == (expected == -2 ? (syserr_t)-1 : 0));
}

static void check_releases(void) {
    char release[8], wide[32];
    syserr_t error = 7;
    check_compare("4.2(1)", "4.1(3)", 1);
    check_compare("4.1(3)", "4.2(1)", -1);
    check_compare("5.0(3)U2(1)", "5.0(3)U1(1)", 0);
    check_compare("4.10(1)", "4.9(1)", 1);
    check_compare("4.1", "4.1(0)", 0);
    check_compare("4.1(4294967299)", "4.1(4294967298)", 1);
    check_compare("x.-1(+2)", "0.-1(2)", 0);
    check_compare("4.1(300000000011)", "4.1(30000000001)", 0); /* 15 characters count */
    check_compare("4.1(3)", NULL, -2);
    CHECK(infraconvertascii_compare_versions("4.1(3)", "4.1(3)", NULL) == 0);

    CHECK(infraconvertascii_is_srv_not_supported_target_ver("4.1(3)", "4.2(1)", &error) == 1);
    CHECK(infraconvertascii_is_srv_not_supported_target_ver("5.0(2)", "4.2(1)", NULL) == 0);
    CHECK(infraconvertascii_is_srv_not_supported_target_ver(NULL, "4.2(1)", &error) == 1);
    CHECK(error == (syserr_t)-1);

    memset(release, 'x', sizeof release);
    CHECK(infraconvertascii_get_version("release", release, sizeof release) == 0);
    CHECK(strcmp(release, "5.0(3)U") == 0);
    memset(wide, 'x', sizeof wide);
    CHECK(infraconvertascii_get_version("release", wide, sizeof wide) == 0);
    CHECK(wide[sizeof wide - 1] == 0);
    CHECK(infraconvertascii_get_version("release", release, 1) == 0);
    CHECK(release[0] == 0);
    CHECK(infraconvertascii_get_version("release", release, 0) == -1);
    CHECK(infraconvertascii_get_version("release", NULL, 8) == -1);
    CHECK(infraconvertascii_get_version(NULL, release, 8) == -1);
}

static void check_conversions(void) {
    const infraconvertascii_args_t args = {"no/such/directory", "package", "5.0(3)", "4.0(1)"};
    convertascii_ret_value_t result = {11, 12};
    CHECK(infraconvertascii_startup(SRVUUID_NPIVP, &result, &args) == 0);
    CHECK(result.uuid == SRVUUID_NPIVP && result.syserr == (syserr_t)-1);
    result.uuid = 11;
    CHECK(infraconvertascii_startup(99, &result, &args) == 0);
    CHECK(result.uuid == 11);
    CHECK(infraconvertascii_startup(SRVUUID_NPIVP, NULL, &args) == 0);
    CHECK(infraconvertascii_startup(SRVUUID_PSM, &result, NULL) == 0);
    CHECK(result.uuid == SRVUUID_PSM && result.syserr == (syserr_t)-1);
    CHECK(infraconvertascii_startup_all(&args) == 0);
    CHECK(infraconvertascii_startup_all(NULL) == 0);
}

static void check_switches(void) {
    CHECK(qosmgrcnv_debug == 0 && fcportsec_debug == 1 && npiv_debug == 1);
    CHECK(fwmcnv_debug == 0 && satcnv_debug == 1);
    CHECK(!err_fp && !err_fp_fc && !npiv_err_fp_fc && !fwmcnv_err_fp && !satcnv_err_fp);
}

/* Two of the platform's functions, in place of the library's stand-ins. */
static char last_locator[256];

const char *srg_sw_ver_file_get(const char *path) {
    return path && strcmp(path, "release") == 0 ? "5.0(3)U2(1)" : NULL;
}

syserr_t pss2_destroy(const char *locator) {
    snprintf(last_locator, sizeof last_locator, "%s", locator);
    return 5;
}

static void check_stores(void) {
    char long_name[400];
    CHECK(infraconvertascii_destroy_volatile_pss("/a", "b") == 5);
    CHECK(strcmp(last_locator, "volatile:/a/b") == 0);
    memset(long_name, 'n', sizeof long_name - 1);
    long_name[sizeof long_name - 1] = '\0';
    CHECK(infraconvertascii_destroy_nonvolatile_pss(NULL, long_name) == 5);
    CHECK(strncmp(last_locator, "nonvolatile:(null)/nnn", 22) == 0);
    CHECK(strlen(last_locator) == 255);
}

int main(void) {
    check_switches(); /* before any conversion opens a log */
    libinfraconvertascii_init(-3);
    check_registry();
    check_releases();
    check_conversions();
    check_stores();
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
