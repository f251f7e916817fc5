// Release text to numbers. The texts are short, so the C library's formatted scanning is at home
// here.

#include "engine/release.h"

#include "platform/calls.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace engine {

namespace {

// The numbers of a release while they are read. A number that is too large keeps its low 32 bits,
// as it does where "%d" reads it with a long of 64; so that it does so on every machine, all are
// read with 64 bits.
struct wide_numbers_t {
    long long major, minor, patch, kesto_major, kesto_minor, subversion;

    explicit wide_numbers_t(const release_t &r)
        : major(r.major), minor(r.minor), patch(r.patch), kesto_major(r.kesto_major),
          kesto_minor(r.kesto_minor), subversion(r.subversion) {}

    release_t narrow(char product) const {
        return {static_cast<int32_t>(major),       static_cast<int32_t>(minor),
                static_cast<int32_t>(patch),       static_cast<int32_t>(kesto_major),
                static_cast<int32_t>(kesto_minor), product,
                static_cast<int32_t>(subversion)};
    }
};

std::string reduced(const release_t &r, bool with_k_train) {
    std::string text = std::to_string(r.major) + '.' + std::to_string(r.minor) + '(' +
                       std::to_string(r.patch) + ')';
    if (with_k_train)
        text += 'K' + std::to_string(r.kesto_major) + '(' + std::to_string(r.kesto_minor) + ')';
    return text;
}

} // namespace

void read_release(release_t &release, release_format_t format, const char *text) {
    wide_numbers_t n(release);
    char product = release.product;
    if (format == release_format_t::product)
        sscanf(text, "%lld.%lld(%lld)%c%lld", &n.major, &n.minor, &n.patch, &product,
               &n.subversion);
    else if (format == release_format_t::k_train_or_u && strchr(text, 'u'))
        sscanf(text, "%lld.%lld(%lldu)K%lld(%lldu)", &n.major, &n.minor, &n.patch, &n.kesto_major,
               &n.kesto_minor);
    else
        sscanf(text, "%lld.%lld(%lld)K%lld(%lld)", &n.major, &n.minor, &n.patch, &n.kesto_major,
               &n.kesto_minor);
    release = n.narrow(product);
}

std::string release_from_platform(const char *variable, bool with_k_train) {
    const char *text = platform::release_in_file(getenv(variable));
    wide_numbers_t n({});
    int length_to_patch = 0;
    if (sscanf(text, "%lld.%lld(%lld%n", &n.major, &n.minor, &n.patch, &length_to_patch) == 3) {
        // Whatever stands between the patch number and its parenthesis does not count.
        if (const char *closed = strchr(text + length_to_patch, ')'))
            sscanf(closed + 1, "K%lld(%lld)", &n.kesto_major, &n.kesto_minor);
    }
    return reduced(n.narrow('\0'), with_k_train);
}

} // namespace engine
