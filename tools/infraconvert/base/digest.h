#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// The SHA-256 digest of `bytes` in hexadecimal.
std::string sha256(std::string_view bytes);

} // namespace infraconvert
