// Which row of one effect table stands for which of the other.
#pragma once

#include "meaning/comparison.h"

namespace infraconvert::meaning {

// A row of one table, and what became of it.
struct fate_t {
    const row_t *row;
    std::string effect; // as it has to be in the result
    bool same = false;
    const row_t *partner = nullptr; // the row of the other table that stands in its place
};
using fates_t = std::vector<fate_t>;

inline bool same_effect(const fate_t &fate, const row_t &row) {
    return fate.row->keyword == row.keyword && fate.effect == row.effect;
}

inline bool same_place(const row_t &a, const row_t &b) {
    return a.place == b.place && a.direction == b.direction;
}

class pairing_t {
  public:
    explicit pairing_t(comparison_t &comparison) {
        for (const row_t &row : comparison.before.table) {
            const release_t &from = comparison.route.front(), &to = comparison.route.back();
            before.push_back(
                {&row, row.mtu ? "mtu " + std::to_string(expected_mtu(*row.mtu, from, to).value)
                               : row.effect});
        }
        for (const row_t &row : comparison.after.table)
            after.push_back({&row, row.effect});
        pair([](const fate_t &a, const fate_t &b) {
            return same_place(*a.row, *b.row) && a.row->traffic == b.row->traffic &&
                   same_effect(a, *b.row);
        });
        for (fates_t *fates : {&before, &after}) {
            for (fate_t &fate : *fates)
                fate.same = fate.partner != nullptr;
        }
        pair([](const fate_t &a, const fate_t &b) {
            return same_place(*a.row, *b.row) && a.row->traffic == b.row->traffic &&
                   a.row->keyword == b.row->keyword;
        });
        pair([](const fate_t &a, const fate_t &b) {
            return same_place(*a.row, *b.row) && same_effect(a, *b.row);
        });
    }

    fates_t before, after;

  private:
    template<typename same_t> void pair(same_t same) {
        for (fate_t &old : before) {
            if (old.partner)
                continue;
            for (fate_t &now : after) {
                if (now.partner || !same(old, now))
                    continue;
                old.partner = now.row;
                now.partner = old.row;
                break;
            }
        }
    }
};

} // namespace infraconvert::meaning
