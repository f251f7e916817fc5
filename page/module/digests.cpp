// SHA-256 and base64 by JavaScript, in place of the cryptographic library of the command: the page
// brings js-sha256 from npm along, and browsers have base64.

#include "base/base64.h"
#include "base/digest.h"
#include "base/errors.h"
#include "base/quoting.h"

#include <emscripten.h>
#include <unistd.h>

// clang-format off
EM_JS(void, javascript_sha256, (const char *bytes, size_t size, char *hexadecimal), {
    stringToUTF8(Module.sha256(HEAPU8.subarray(bytes, bytes + size)), hexadecimal, 65);
})

EM_JS(void, javascript_hmac,
      (const char *key, size_t key_size, const char *bytes, size_t size, char *hexadecimal), {
    stringToUTF8(Module.sha256.hmac(HEAPU8.subarray(key, key + key_size),
                                    HEAPU8.subarray(bytes, bytes + size)), hexadecimal, 65);
})

EM_JS(void, javascript_base64, (const char *bytes, size_t size, char *text), {
    var characters = "";
    for (var i = 0; i < size; i++) characters += String.fromCharCode(HEAPU8[bytes + i]);
    writeAsciiToMemory(btoa(characters), text);
})

EM_JS(int, bytes_of_base64, (const char *text, char *bytes), {
    try {
        var characters = atob(UTF8ToString(text));
        for (var i = 0; i < characters.length; i++) HEAPU8[bytes + i] = characters.charCodeAt(i);
        return characters.length;
    } catch (error) {
        return -1;
    }
})
// clang-format on

namespace infraconvert {

namespace {

constexpr size_t key_size = 32;                // of SHA-256: a longer key gives no more
constexpr size_t text_size = 2 * key_size + 1; // of a digest in hexadecimal

} // namespace

std::string sha256(std::string_view bytes) {
    char text[text_size];
    javascript_sha256(bytes.data(), bytes.size(), text);
    return text;
}

std::string hmac_sha256(std::string_view key, std::string_view bytes) {
    char text[text_size];
    javascript_hmac(key.data(), key.size(), bytes.data(), bytes.size(), text);
    return text;
}

std::string random_key() {
    std::string key(key_size, '\0');
    if (getentropy(key.data(), key.size()) != 0)
        throw run_error_t("cannot make a key: there are no random bytes");
    return key;
}

std::string base64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4, '\0');
    javascript_base64(bytes.data(), bytes.size(), text.data());
    return text;
}

std::string from_base64(const std::string &text) {
    std::string bytes(text.size(), '\0');
    const int size = bytes_of_base64(text.c_str(), bytes.data());
    if (size < 0 || text.size() % 4 != 0)
        throw input_error_t("no base64: " + quoted_name(text));
    bytes.resize(static_cast<size_t>(size));
    return bytes;
}

} // namespace infraconvert
