// Stand-ins for the platform's three functions, weak so that the real ones replace them.

#include "platform/platform.h"

#include <cstdio>
#include <cstring>

namespace {
constexpr size_t release_text_size = 512;
constexpr size_t status_text_size = 32;
} // namespace

extern "C" {

__attribute__((weak)) const char *srg_sw_ver_file_get(const char *path) {
    static char release[release_text_size];
    release[0] = '\0';
    if (FILE *file = path != nullptr ? fopen(path, "r") : nullptr) {
        if (fgets(release, sizeof release, file) == nullptr)
            release[0] = '\0';
        release[strcspn(release, "\n")] = '\0';
        fclose(file);
    }
    return release;
}

__attribute__((weak)) syserr_t pss2_destroy(const char * /*locator*/) {
    return static_cast<syserr_t>(-1);
}

__attribute__((weak)) const char *syserr2str(syserr_t status) {
    static char text[status_text_size];
    if (status == 0)
        return "success";
    snprintf(text, sizeof text, "error 0x%x", status);
    return text;
}

} // extern "C"
