// The effects before and after a conversion, compared in another way than the judgement does it.
#pragma once

#include "infraconvert/meaning/configurations.h"

#include "meaning/changes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace meaning_test {

// How a release counts: without types, 4.1(3) with types, and later ones without 38 bytes.
inline int era(const std::string &release) {
    return release < "4.1(3)" ? 0 : release.starts_with("4.1(3)") ? 1 : 2;
}

inline long mtu_after(long mtu, const std::vector<std::string> &route) {
    const int from = era(route.front()), to = era(route.back());
    if (mtu == 9216 || to == 0 || from == to)
        return mtu;
    return from < to ? std::max(mtu - 38, 1500L) : std::min(mtu + 38, 9216L);
}

// "Ethernet1/1|output|cos 5|priority"
inline std::set<std::string> effects(const std::string &text, const std::string &release,
                                     const std::vector<std::string> &to) {
    std::set<std::string> effects;
    for (const auto &[row, change] : infraconvert::meaning::rows_of(text, release))
        effects.insert(row.place + '|' + row.direction + '|' + row.traffic + '|' +
                       (row.mtu ? "mtu " + std::to_string(mtu_after(*row.mtu, to)) : row.effect));
    return effects;
}

inline void expect_the_same(const conversion_t &conversion) {
    const auto &[from, to] = std::tie(conversion.route.front(), conversion.route.back());
    EXPECT_EQ(effects(conversion.before, from, conversion.route),
              effects(conversion.after, to, {to, to}))
        << conversion.words();
}

} // namespace meaning_test
