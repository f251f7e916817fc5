// The shapes of values that tell nothing: numbers, addresses, names of interfaces and of maps.
#pragma once

#include <string_view>

namespace infraconvert {

using word_shape_t = bool (*)(std::string_view word);

// The shape of this name; the name must exist.
word_shape_t word_shape_named(std::string_view name);

// Those that others look for too.
bool is_number(std::string_view word);         // of up to ten digits
bool is_number_list(std::string_view word);    // 1,10-12
bool is_interface(std::string_view word);      // Ethernet1/1, port-channel10, fc2/1
bool is_release_number(std::string_view word); // 5.0(3)U2(1)

} // namespace infraconvert
