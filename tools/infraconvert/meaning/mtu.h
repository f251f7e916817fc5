// The size of an MTU in two releases: releases count 38 bytes of headers or they do not.
#pragma once

#include "meaning/dialect.h"

#include <span>
#include <string_view>
#include <vector>

namespace infraconvert::meaning {

enum class mtu_fate_t {
    same_size,     // the number that means the same size
    limit,         // it would be outside 1500 to 9216 and is the limit instead
    not_raised,    // the number of before, though the release counts another size by it
    lowered_twice, // by two conversions on a route
    wrong,
};

struct mtu_t {
    long value;
    mtu_fate_t fate;
};

// The number that `value` must have after a conversion from one release to another.
mtu_t expected_mtu(long value, const release_t &from, const release_t &to);

// The number of the same size, which may lie beyond the limits.
long same_size(long value, const release_t &from, const release_t &to);

// What became of `before` on a route of releases, the first the one that wrote it.
mtu_fate_t fate_of_mtu(long before, long after, std::span<const release_t> route);

} // namespace infraconvert::meaning
