// Two release texts to the instance's pair of releases.

#include "engine/operation.h"

namespace engine {

namespace {

constexpr size_t release_text_length = 511;

// The release that the installer passes, else the one that the platform knows.
std::string passed_or_known(const engine_t &e, const char *text, const char *variable) {
    if (text)
        return std::string(text).substr(0, release_text_length);
    return release_from_platform(variable, e.platform_keeps_k_train);
}

// The parsed values, in the words of each instance.
void log_versions(const engine_t &e) {
    const release_t &from = e.from, &to = e.to;
    if (e.format == release_format_t::product)
        log_operation(e, "read_versions",
                      "from_major = %d, from_minor = %d, from_patch = %d, from_product = %c "
                      "from_subversion = %d to_major = %d, to_minor = %d, to_patch = %d "
                      "to_product = %c to_subversion = %d\n",
                      from.major, from.minor, from.patch, from.product, from.subversion, to.major,
                      to.minor, to.patch, to.product, to.subversion);
    else
        log_operation(e, "read_versions",
                      "from_major = %d, from_minor = %d, from_patch = %d, kesto = K%d(%d)%s"
                      "to_major = %d, to_minor = %d, to_patch = %d, kesto = K%d(%d)\n",
                      from.major, from.minor, from.patch, from.kesto_major, from.kesto_minor,
                      e.release_separator, to.major, to.minor, to.patch, to.kesto_major,
                      to.kesto_minor);
}

} // namespace

bool read_versions(engine_t &e, const char *from_version, const char *to_version) {
    const std::string to = passed_or_known(e, to_version, to_release_file_variable);
    const std::string from = passed_or_known(e, from_version, from_release_file_variable);
    log_operation(e, "read_versions", "to_ver = %s, from_ver = %s\n", to.c_str(), from.c_str());
    read_release(e.from, e.format, from.c_str());
    read_release(e.to, e.format, to.c_str());
    log_versions(e);
    return from != to;
}

} // namespace engine
