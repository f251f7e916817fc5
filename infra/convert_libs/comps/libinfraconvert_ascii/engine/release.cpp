// Release text to numbers. The texts are short, so the C library's formatted scanning is at home
// here, and gives numbers that are too large the values that it has always given them.

#include "engine/release.h"

#include "platform/stand_in.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace engine {

namespace {

std::string reduced(const release_t &r, bool with_k_train) {
    std::string text = std::to_string(r.major) + '.' + std::to_string(r.minor) + '(' +
                       std::to_string(r.patch) + ')';
    if (with_k_train)
        text += 'K' + std::to_string(r.kesto_major) + '(' + std::to_string(r.kesto_minor) + ')';
    return text;
}

} // namespace

void read_release(release_t &release, release_format format, const char *text) {
    release_t &r = release;
    switch (format) {
    case release_format::product:
        sscanf(text, "%d.%d(%d)%c%d", &r.major, &r.minor, &r.patch, &r.product, &r.subversion);
        return;
    case release_format::k_train_or_u:
        if (strchr(text, 'u')) {
            sscanf(text, "%d.%d(%du)K%d(%du)", &r.major, &r.minor, &r.patch, &r.kesto_major,
                   &r.kesto_minor);
            return;
        }
        [[fallthrough]];
    case release_format::k_train:
        sscanf(text, "%d.%d(%d)K%d(%d)", &r.major, &r.minor, &r.patch, &r.kesto_major,
               &r.kesto_minor);
        return;
    }
}

std::string release_from_platform(const char *variable, bool with_k_train) {
    const char *text = platform::release_text(getenv(variable));
    release_t r;
    int length_to_patch = 0;
    if (sscanf(text, "%d.%d(%d%n", &r.major, &r.minor, &r.patch, &length_to_patch) == 3) {
        // Whatever stands between the patch number and its parenthesis does not count.
        if (const char *closed = strchr(text + length_to_patch, ')'))
            sscanf(closed + 1, "K%d(%d)", &r.kesto_major, &r.kesto_minor);
    }
    return reduced(r, with_k_train);
}

} // namespace engine
