// Release texts such as 4.1(3), 5.0(3)U2(1) and 4.1(3)K2(1), and how they are read.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace engine {

// A release text that the installer does not pass is read from the file that these name.
constexpr const char *from_release_file_variable = "SYSMGR_FROM_SRG_PATH";
constexpr const char *to_release_file_variable = "SYSMGR_TO_SRG_PATH";

struct release_t {
    int32_t major = 0;
    int32_t minor = 0;
    int32_t patch = 0;
    int32_t kesto_major = 0; // of the K train
    int32_t kesto_minor = 0;
    char product = '\0'; // letter right behind ")", of the QoS instance
    int32_t subversion = 0;
};

// How an instance reads a release text.
enum class release_format_t {
    product,      // 5.0(3)U2(1), up to the sub-version
    k_train,      // 4.1(3)K2(1)
    k_train_or_u, // 4.1(3)K2(1), or 4.1(3u)K2(1u) when the text holds a letter u
};

// Reads `text` into `release`, field by field from the left up to the first character that does
// not fit. Fields that the text does not supply keep their values.
void read_release(release_t &release, release_format_t format, const char *text);

// Returns the release in the platform's release file that the environment variable `variable`
// names, reduced to what the installer would pass: major.minor(patch), and with `with_k_train`
// also the K part. Numbers that the file does not supply are 0.
std::string release_from_platform(const char *variable, bool with_k_train);

// Major, minor and patch, to be compared field by field.
inline auto triple(const release_t &r) { return std::tuple(r.major, r.minor, r.patch); }

// The triple and the K train.
inline auto quintuple(const release_t &r) {
    return std::tuple(r.major, r.minor, r.patch, r.kesto_major, r.kesto_minor);
}

} // namespace engine
