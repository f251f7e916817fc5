// The front: the registry of converters, their dispatch, the front log, and the small release and
// storage services that the installer calls directly.

#include "include/libinfraconvertascii.h"

#include "engine/engine.h"
#include "platform/calls.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <unistd.h>

constinit const infra_convertascii_startup
    infra_convertascii_startup_table[INFRA_CONVERTASCII_STARTUP_ROWS] = {
        {SRVUUID_IPQOS_MGR, ipqosmgr_infra_convert_startup},
        {SRVUUID_PSM, fcportsec_infra_convert_startup},
        {SRVUUID_NPIVP, npiv_infra_convert_startup},
        {SRVUUID_FWM, fwm_infra_convert_startup},
        {SRVUUID_ASSOC_MGR, assoc_infra_convert_startup},
        {SRVUUID_SATMGR, satmgr_infra_convert_startup},
        {0, nullptr},
};

namespace {

constexpr const char *front_log = "/mnt/pss/infra_convertascii.log";
constexpr int time_length = 24; // of ctime's text, without its newline

mts_q_handle_t infraconvertascii_mts_q = 0;

FILE *open_debug_log() { return fopen(front_log, "a+"); }

// On return the line is on stable storage.
void close_debug_log(FILE *log) {
    fflush(log);
    fsync(fileno(log));
    fclose(log);
}

// Writes a front message of the function `function`: always on standard error, and in the front
// log where that can be opened.
[[gnu::format(printf, 2, 3)]] void front_message(const char *function, const char *format, ...) {
    const auto print = [&](FILE *stream, va_list arguments) {
        fprintf(stream, "%s: ", function);
        vfprintf(stream, format, arguments);
    };
    va_list arguments;
    va_start(arguments, format);
    print(stderr, arguments);
    va_end(arguments);
    FILE *log = open_debug_log();
    if (!log)
        return;
    const time_t now = time(nullptr);
    fprintf(log, "<%.*s> ", time_length, ctime(&now));
    va_start(arguments, format);
    print(log, arguments);
    va_end(arguments);
    close_debug_log(log);
}

// A release as the services read it: the first 15 characters, and of these the first three numbers
// between ".", "(" and ")".
struct numbers_t {
    static constexpr size_t count = 3;
    long long value[count] = {}; // what 15 characters can say fits on every machine

    explicit numbers_t(const char *release) {
        constexpr size_t longest = 15;
        std::string text(release, strnlen(release, longest));
        char *rest = nullptr;
        const char *token = strtok_r(text.data(), ".()", &rest);
        for (size_t i = 0; i < count && token; i++, token = strtok_r(nullptr, ".()", &rest))
            value[i] = strtoll(token, nullptr, 10);
    }
};

syserr_t destroy_pss(const char *kind, const char *path, const char *pssname) {
    char locator[256] = "";
    snprintf(locator, sizeof locator, "%s:%s/%s", kind, engine::text_or_null(path),
             engine::text_or_null(pssname));
    return platform::destroy_store(locator);
}

} // namespace

void libinfraconvertascii_init(mts_q_handle_t q) {
    infraconvertascii_mts_q = q;
    front_message(__func__, "infraconvertascii_mts_q = %d\n", infraconvertascii_mts_q);
}

boolean is_uuid_in_convertascii_startup_table(uuid_t uuid) {
    for (const auto *row = infra_convertascii_startup_table; row->fn; row++) {
        if (row->uuid == uuid)
            return 1;
    }
    return 0;
}

syserr_t infraconvertascii_startup(uuid_t uuid, convertascii_ret_value_t *a,
                                   const infraconvertascii_args_t *args) {
    if (!args) {
        front_message(__func__, "Invalid or NULL argument passed\n");
        if (a)
            *a = {uuid, engine::failure};
        return 0;
    }
    for (const auto *row = infra_convertascii_startup_table; row->fn; row++) {
        if (row->uuid != uuid)
            continue;
        front_message(__func__, "calling convert ASCII function for uuid = 0x%x\n", uuid);
        const syserr_t status =
            row->fn(args->path, args->pkg_name, args->to_pkg_version, args->from_pkg_version);
        if (status != 0 && a)
            *a = {row->uuid, status};
    }
    return 0;
}

syserr_t infraconvertascii_startup_all(const infraconvertascii_args_t *args) {
    if (!args) {
        front_message(__func__, "Invalid or NULL argument passed\n");
        return 0;
    }
    for (const auto *row = infra_convertascii_startup_table; row->fn; row++) {
        front_message(__func__, "calling convert ASCII function for uuid = 0x%x\n", row->uuid);
        convertascii_ret_value_t result = {row->uuid, 0};
        infraconvertascii_startup(row->uuid, &result, args);
        if (result.syserr != 0)
            front_message(__func__, "convert ASCII function for uuid = 0x%x returned error 0x%x\n",
                          row->uuid, result.syserr);
    }
    return 0;
}

int infraconvertascii_get_version(const char *srg_path, char *ver_str, int32_t ver_str_size) {
    if (!srg_path || !ver_str || ver_str_size < 1)
        return -1;
    const auto size = static_cast<size_t>(ver_str_size);
    memset(ver_str, 0, size);
    snprintf(ver_str, size, "%s", platform::release_in_file(srg_path));
    return 0;
}

int infraconvertascii_compare_versions(const char *from_ver, const char *to_ver,
                                       syserr_t *errcode) {
    if (errcode)
        *errcode = 0;
    if (!from_ver || !to_ver) {
        front_message(__func__, "Invalid or NULL argument passed\n");
        if (errcode)
            *errcode = engine::failure;
        return -2;
    }
    const numbers_t from(from_ver), to(to_ver);
    for (size_t i = 0; i < numbers_t::count; i++) {
        if (from.value[i] != to.value[i])
            return from.value[i] > to.value[i] ? 1 : -1;
    }
    return 0;
}

boolean infraconvertascii_is_srv_not_supported_target_ver(const char *curr_ver,
                                                          const char *min_supported_ver,
                                                          syserr_t *errcode) {
    syserr_t error = 0;
    const int result = infraconvertascii_compare_versions(curr_ver, min_supported_ver, &error);
    if (errcode)
        *errcode = error;
    return error != 0 || result < 0;
}

syserr_t infraconvertascii_destroy_nonvolatile_pss(const char *path, const char *pssname) {
    return destroy_pss("nonvolatile", path, pssname);
}

syserr_t infraconvertascii_destroy_volatile_pss(const char *path, const char *pssname) {
    return destroy_pss("volatile", path, pssname);
}
