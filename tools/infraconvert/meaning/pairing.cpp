#include "meaning/pairing.h"

#include <deque>
#include <unordered_map>

namespace infraconvert::meaning {

namespace {

std::string place_of(const row_t &row) { return row.place + '\n' + row.direction + '\n'; }

std::string expected_effect(const row_t &row, const comparison_t &comparison) {
    const release_t &from = comparison.route.front(), &to = comparison.route.back();
    return row.mtu ? "mtu " + std::to_string(expected_mtu(*row.mtu, from, to).value) : row.effect;
}

} // namespace

pairing_t::pairing_t(const comparison_t &comparison) {
    for (const row_t &row : comparison.before.table)
        before.push_back({&row, expected_effect(row, comparison)});
    for (const row_t &row : comparison.after.table)
        after.push_back({&row, row.effect});
    pair([](const fate_t &fate) {
        return place_of(*fate.row) + fate.row->traffic + '\n' + fate.row->keyword + '\n' +
               fate.effect;
    });
    for (fates_t *fates : {&before, &after}) {
        for (fate_t &fate : *fates)
            fate.same = fate.partner != nullptr;
    }
    pair([](const fate_t &fate) {
        return place_of(*fate.row) + fate.row->traffic + '\n' + fate.row->keyword;
    });
    pair([](const fate_t &fate) {
        return place_of(*fate.row) + fate.row->keyword + '\n' + fate.effect;
    });
}

template<typename key_t> void pairing_t::pair(key_t key) {
    std::unordered_map<std::string, std::deque<fate_t *>> free;
    for (fate_t &now : after) {
        if (!now.partner)
            free[key(now)].push_back(&now);
    }
    for (fate_t &old : before) {
        if (old.partner || free.empty())
            continue;
        const auto found = free.find(key(old));
        if (found == free.end() || found->second.empty())
            continue;
        fate_t &now = *found->second.front();
        found->second.pop_front();
        old.partner = now.row;
        now.partner = old.row;
    }
}

} // namespace infraconvert::meaning
