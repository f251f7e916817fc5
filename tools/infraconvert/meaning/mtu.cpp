#include "meaning/mtu.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

constexpr long overhead = 38, lowest = 1500, highest = 9216;

// How the number for a size changes between two releases.
long shift_between(triple_t from, triple_t to) {
    if (from < first_typed)
        return to >= first_typed ? -overhead : 0;
    if (from == first_typed && to >= first_short_mtu)
        return -overhead;
    return from >= first_short_mtu && to == first_typed ? overhead : 0;
}

} // namespace

mtu_t expected_mtu(long value, const release_t &from, const release_t &to) {
    if (value == highest)
        return {value, mtu_fate_t::same_size};
    if (triple(from) >= first_typed && triple(to) < first_typed)
        return {value, mtu_fate_t::not_raised};
    const long shift = shift_between(triple(from), triple(to));
    const long limited = shift < 0   ? std::max(value + shift, lowest)
                         : shift > 0 ? std::min(value + shift, highest)
                                     : value;
    return {limited, limited == value + shift ? mtu_fate_t::same_size : mtu_fate_t::limit};
}

long same_size(long value, const release_t &from, const release_t &to) {
    if (triple(from) >= first_short_mtu && triple(to) < first_typed)
        return value + overhead;
    return value == highest ? value : value + shift_between(triple(from), triple(to));
}

mtu_fate_t fate_of_mtu(long before, long after, std::span<const release_t> route) {
    const mtu_t direct = expected_mtu(before, route.front(), route.back());
    if (after == direct.value)
        return direct.fate;
    long value = before;
    for (size_t i = 1; i < route.size(); i++)
        value = expected_mtu(value, route[i - 1], route[i]).value;
    return after == value ? mtu_fate_t::lowered_twice : mtu_fate_t::wrong;
}

} // namespace infraconvert::meaning
