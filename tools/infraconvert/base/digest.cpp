#include "base/digest.h"

#include "base/errors.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

namespace infraconvert {

namespace {

constexpr size_t key_size = 32; // of SHA-256: a longer key gives no more

std::string in_hexadecimal(const unsigned char *digest, size_t size) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (size_t i = 0; i < size; i++) {
        text += digits[digest[i] >> 4];
        text += digits[digest[i] & 0xF];
    }
    return text;
}

} // namespace

std::string sha256(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_sha256(), nullptr) != 1)
        throw run_error_t("cannot compute a SHA-256 digest");
    return in_hexadecimal(digest, size);
}

std::string hmac_sha256(std::string_view key, std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    const auto *first = reinterpret_cast<const unsigned char *>(bytes.data());
    if (!HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), first, bytes.size(), digest,
              &size))
        throw run_error_t("cannot compute a digest with a key");
    return in_hexadecimal(digest, size);
}

std::string random_key() {
    unsigned char key[key_size];
    if (RAND_bytes(key, sizeof key) != 1)
        throw run_error_t("cannot make a key: there are no random bytes");
    return {reinterpret_cast<const char *>(key), sizeof key};
}

} // namespace infraconvert
