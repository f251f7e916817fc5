#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// Each throws run_error_t where the cryptographic library does not do it.

// The SHA-256 digest of `bytes` in hexadecimal.
std::string sha256(std::string_view bytes);

// The HMAC-SHA-256 of `bytes` in hexadecimal: a digest with which nobody can confirm a guess at
// the bytes who does not have the key.
std::string hmac_sha256(std::string_view key, std::string_view bytes);

// A key that nobody can guess.
std::string random_key();

} // namespace infraconvert
