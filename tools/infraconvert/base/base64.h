#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

std::string base64(std::string_view bytes);

// Throws input_error_t for what is no base64.
std::string from_base64(const std::string &text);

} // namespace infraconvert
