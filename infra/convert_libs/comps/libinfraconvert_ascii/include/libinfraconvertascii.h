/* libconvertinfraascii: converts the saved configuration of a switch between software releases.
 *
 * The installer calls this library after it knows the release that wrote the configuration ("from")
 * and the release that will read it ("to"). Each converter decides from the two release texts
 * whether anything applies, loads PATH/ascii/system.cfg, rewrites it and saves it only when every
 * rewrite succeeded. Nothing here is safe to call from two threads at once.
 *
 * All texts are zero-terminated, belong to the caller and are not kept after the call. */
#ifndef LIBINFRACONVERTASCII_H
#define LIBINFRACONVERTASCII_H

#include <stdint.h>
#include <stdio.h>

#include "platform/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Services and their converters ---- */

/* Service identifiers that have a converter. */
#define SRVUUID_IPQOS_MGR 473u /* QoS */
#define SRVUUID_PSM 139u       /* FC port security */
#define SRVUUID_NPIVP 649u     /* NPIV */
#define SRVUUID_FWM 652u       /* MAC address table */
#define SRVUUID_ASSOC_MGR 734u /* VLAN-FCoE association */
#define SRVUUID_SATMGR 678u    /* fabric extender */

/* What one conversion is about. A null `args` runs nothing. */
typedef struct infraconvertascii_args {
    const char *path;             /* directory that holds ascii/system.cfg */
    const char *pkg_name;         /* package being installed; only logged */
    const char *to_pkg_version;   /* target release such as "4.1(3)"; null: from the file that
                                     SYSMGR_TO_SRG_PATH names, but for the association converter,
                                     which fails then */
    const char *from_pkg_version; /* source release; null: likewise with SYSMGR_FROM_SRG_PATH */
} infraconvertascii_args_t;

/* Which converter failed, and how. Written only on failure, so the caller initialises it. */
typedef struct convertascii_ret_value {
    uint32_t uuid;
    syserr_t syserr;
} convertascii_ret_value_t;

/* Starts one converter. Returns 0 when the file was saved or nothing applies, -1 otherwise; the
 * file on disk is then as it was, unless the save itself failed where the file cannot be replaced
 * as a whole, or in its very last step, the sync of the directory. */
typedef syserr_t (*convertascii_startup_fn)(const char *path, const char *pkg_name,
                                            const char *to_pkg_version,
                                            const char *from_pkg_version);

typedef struct infra_convertascii_startup {
    uint32_t uuid;
    convertascii_startup_fn fn;
} infra_convertascii_startup;

/* The converters in the order in which they run, ended by a row of 0 and null. */
#define INFRA_CONVERTASCII_STARTUP_ROWS 7
extern const infra_convertascii_startup
    infra_convertascii_startup_table[INFRA_CONVERTASCII_STARTUP_ROWS];

syserr_t ipqosmgr_infra_convert_startup(const char *path, const char *pkg_name,
                                        const char *to_pkg_version, const char *from_pkg_version);
syserr_t fcportsec_infra_convert_startup(const char *path, const char *pkg_name,
                                         const char *to_pkg_version, const char *from_pkg_version);
syserr_t npiv_infra_convert_startup(const char *path, const char *pkg_name,
                                    const char *to_pkg_version, const char *from_pkg_version);
syserr_t fwm_infra_convert_startup(const char *path, const char *pkg_name,
                                   const char *to_pkg_version, const char *from_pkg_version);
syserr_t assoc_infra_convert_startup(const char *path, const char *pkg_name,
                                     const char *to_pkg_version, const char *from_pkg_version);
syserr_t satmgr_infra_convert_startup(const char *path, const char *pkg_name,
                                      const char *to_pkg_version, const char *from_pkg_version);

/* ---- What the installer calls ---- */

/* Stores and logs the installer's message-queue handle. Nothing is ever sent on it. */
void libinfraconvertascii_init(mts_q_handle_t q);

/* Returns 1 when a converter is registered for `uuid`, else 0. */
boolean is_uuid_in_convertascii_startup_table(uuid_t uuid);

/* Runs the converter registered for `uuid`; an unknown identifier runs nothing. Always returns 0:
 * a failure reaches the caller only through `a`, which may be null. Null `args` are a failure of
 * `uuid`. */
syserr_t infraconvertascii_startup(uuid_t uuid, convertascii_ret_value_t *a,
                                   const infraconvertascii_args_t *args);

/* Runs every converter in table order, going on after a failure. Always returns 0: failures stand
 * in the front log and on standard error. */
syserr_t infraconvertascii_startup_all(const infraconvertascii_args_t *args);

/* ---- Release and storage services ---- */

/* Writes the release text of the release file `srg_path` into `ver_str`, an area of `ver_str_size`
 * bytes, cut to fit and terminated. Returns 0, or -1 for a null argument or a size below 1. */
int infraconvertascii_get_version(const char *srg_path, char *ver_str, int32_t ver_str_size);

/* Compares the first three numbers of two releases: 1 when `from_ver` is the newer, -1 when it is
 * the older, 0 when they agree. A null release gives -2. `errcode`, which may be null, receives 0,
 * or -1 with the result -2. */
int infraconvertascii_compare_versions(const char *from_ver, const char *to_ver, syserr_t *errcode);

/* Returns 1 when `curr_ver` is older than `min_supported_ver` or when they cannot be compared (then
 * `errcode`, which may be null, receives -1), else 0. */
boolean infraconvertascii_is_srv_not_supported_target_ver(const char *curr_ver,
                                                          const char *min_supported_ver,
                                                          syserr_t *errcode);

/* Remove the persistent store `pssname` below `path`. Return the platform's status. */
syserr_t infraconvertascii_destroy_nonvolatile_pss(const char *path, const char *pssname);
syserr_t infraconvertascii_destroy_volatile_pss(const char *path, const char *pssname);

/* ---- Debug switches and log streams ----
 *
 * A converter writes its log only while its switch is exactly 1. A stream is null until the
 * converter opens its log; a caller may set it to a stream of its own beforehand, which the
 * converter then writes to and never closes. */
extern boolean qosmgrcnv_debug; /* initially 0 */
extern boolean fcportsec_debug; /* initially 1 */
extern boolean npiv_debug;      /* initially 1 */
extern boolean fwmcnv_debug;    /* initially 0 */
extern boolean satcnv_debug;    /* initially 1 */
extern FILE *err_fp;            /* QoS: /mnt/pss/qoscnv.log */
extern FILE *err_fp_fc;         /* FC port security: /mnt/pss/fcportsec.log */
extern FILE *npiv_err_fp_fc;    /* NPIV: /mnt/pss/npiv.log */
extern FILE *fwmcnv_err_fp;     /* MAC address table: /mnt/pss/fwmcnv.log */
extern FILE *satcnv_err_fp;     /* fabric extender: /mnt/pss/satcnv.log */

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
