#include "base/digest.h"

#include "base/errors.h"

#include <openssl/evp.h>

namespace infraconvert {

std::string sha256(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_sha256(), nullptr) != 1)
        throw run_error_t("cannot compute a SHA-256 digest");
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : std::basic_string_view(digest, size)) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

} // namespace infraconvert
