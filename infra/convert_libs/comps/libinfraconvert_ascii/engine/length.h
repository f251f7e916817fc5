#pragma once

#include <cstdint>
#include <string_view>

namespace engine {

// Length of a text, as positions count.
constexpr uint32_t length(std::string_view text) { return static_cast<uint32_t>(text.size()); }

} // namespace engine
