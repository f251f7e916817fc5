// The platform's three functions where it has them, else their stand-ins. The references are weak:
// whoever links or loads a definition, in whatever order, has it called.

#include "platform/calls.h"

#include <cstdio>
#include <cstring>

extern "C" {
[[gnu::weak]] const char *srg_sw_ver_file_get(const char *path);
[[gnu::weak]] syserr_t pss2_destroy(const char *locator);
[[gnu::weak]] const char *syserr2str(syserr_t status);
}

namespace platform {

namespace {

constexpr size_t release_text_size = 512;
constexpr size_t status_text_size = 32;

const char *first_line(const char *path) {
    static char line[release_text_size];
    line[0] = '\0';
    if (FILE *file = path ? fopen(path, "r") : nullptr) {
        if (!fgets(line, sizeof line, file))
            line[0] = '\0';
        line[strcspn(line, "\n")] = '\0';
        fclose(file);
    }
    return line;
}

const char *status_in_hexadecimal(syserr_t status) {
    static char text[status_text_size];
    snprintf(text, sizeof text, "error 0x%x", status);
    return status == 0 ? "success" : text;
}

} // namespace

const char *release_in_file(const char *path) {
    const char *text = srg_sw_ver_file_get ? srg_sw_ver_file_get(path) : first_line(path);
    return text ? text : "";
}

syserr_t destroy_store(const char *locator) {
    return pss2_destroy ? pss2_destroy(locator) : static_cast<syserr_t>(-1);
}

const char *status_text(syserr_t status) {
    return syserr2str ? syserr2str(status) : status_in_hexadecimal(status);
}

} // namespace platform
