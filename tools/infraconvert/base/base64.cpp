#include "base/base64.h"

#include "base/errors.h"
#include "base/quoting.h"

#include <openssl/evp.h>

#include <vector>

namespace infraconvert {

namespace {

const unsigned char *as_bytes(const char *text) {
    return reinterpret_cast<const unsigned char *>(text);
}

} // namespace

std::string base64(std::string_view bytes) {
    std::vector<unsigned char> text((bytes.size() + 2) / 3 * 4 + 1);
    const int length =
        EVP_EncodeBlock(text.data(), as_bytes(bytes.data()), static_cast<int>(bytes.size()));
    return {text.begin(), text.begin() + length};
}

std::string from_base64(const std::string &text) {
    std::vector<unsigned char> bytes(text.size() + 3);
    const int length =
        EVP_DecodeBlock(bytes.data(), as_bytes(text.data()), static_cast<int>(text.size()));
    const size_t padding = text.ends_with("==") ? 2 : text.ends_with("=") ? 1 : 0;
    if (length < 0 || static_cast<size_t>(length) < padding)
        throw input_error_t("no base64: " + quoted_name(text));
    return {bytes.begin(), bytes.begin() + (length - static_cast<int>(padding))};
}

} // namespace infraconvert
