// "1-10,20,30" to {1,10} {20,20} {30,30}. A number that is not there reads as 0.

#include "assoc/assoc_vlan_list.h"

#include <algorithm>

namespace {

constexpr size_t most_ranges = 512;
constexpr std::string_view list_word = "vlan ";

struct number_t {
    uint32_t value;
    int digits;
};

// Reads the digits at the start of `list` and removes them from it.
number_t assoc_get_value(std::string_view &list) {
    if (list.empty()) {
        assoc_log("  ERROR: Missing input for integer value\n");
        return {0, 0};
    }
    assoc_log("->%s \n", list.data());
    int64_t value = 0;
    int digits = 0;
    for (; !list.empty() && list[0] >= '0' && list[0] <= '9'; list.remove_prefix(1), digits++)
        value = std::min<int64_t>(value * 10 + (list[0] - '0'), INT32_MAX);
    assoc_log(" Read value %d with bytes %d\n", static_cast<int>(value), digits);
    return {static_cast<uint32_t>(value), digits};
}

// Removes `c` from the start of `list`. Returns false when something else stands there.
bool skip(std::string_view &list, char c) {
    if (list.empty() || list[0] != c)
        return false;
    list.remove_prefix(1);
    return true;
}

// Reads "5" or "5-7", appends it, and removes the comma behind it. Returns false when the list ends
// there.
bool read_range(std::string_view &list, assoc_int_multi_range_t &vrange) {
    const uint32_t lower = assoc_get_value(list).value;
    if (!skip(list, '-')) {
        vrange.push_back({lower, lower, false});
        return skip(list, ',');
    }
    const number_t upper = assoc_get_value(list);
    vrange.push_back({lower, upper.value, upper.digits == 0});
    return upper.digits > 0 && skip(list, ',');
}

} // namespace

bool assoc_get_vlan_mrange(engine::position_t cp, assoc_int_multi_range_t &vrange) {
    const assoc_line_t line = assoc_getline(cp);
    if (!line.found) {
        assoc_log("Failed to read the line \n");
        return false;
    }
    std::string_view list = line.text;
    list.remove_prefix(std::min(list.size(), list_word.size()));
    assoc_log("\n Updating <%s> \n", list.data());
    bool goes_on = !list.empty();
    skip(list, ','); // only here: further on, a comma belongs to the number in front of it
    while (goes_on)
        goes_on = read_range(list, vrange) && !list.empty() && vrange.size() < most_ranges;
    return true;
}
