#include "ipqosmgr/qosmgrcnv_util_config/language/mtu.h"

#include "engine/scan.h"

#include <algorithm>
#include <cstring>

const char *qoscnv_behind_mtu(const char *action) {
    constexpr const char *keyword = "mtu";
    const char *found = strstr(action, keyword);
    return found ? found + strlen(keyword) : nullptr;
}

std::string qoscnv_convert_mtu(const char *behind_mtu, bool upgrade) {
    constexpr int64_t shift = 38, least = 1500, most = 9216;
    const std::optional<int32_t> number = engine::scan_number(behind_mtu);
    if (!number)
        return "";
    int64_t value = *number;
    if (value != most)
        value = upgrade ? std::max(value - shift, least) : std::min(value + shift, most);
    return "    mtu " + std::to_string(value) + "\n";
}
