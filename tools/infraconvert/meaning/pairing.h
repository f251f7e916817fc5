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

class pairing_t {
  public:
    explicit pairing_t(const comparison_t &comparison);

    fates_t before, after;

  private:
    // Pairs rows that have no partner yet and of which `key` says the same, in their order.
    template<typename key_t> void pair(key_t key);
};

} // namespace infraconvert::meaning
