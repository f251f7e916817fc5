// A result of a conversion, taken apart once for everything that a search for fixes asks about it.
#pragma once

#include "meaning/compare.h"

#include <set>
#include <span>
#include <string>
#include <vector>

namespace infraconvert::mending {

using differences_t = std::vector<meaning::difference_t>;

// What a search for fixes has done, in bytes of texts that were read, written or judged. It ends
// after a second or so.
class work_t {
  public:
    void add(const std::string &text) { done += text.size(); }
    bool is_too_much() const { return done > most; }

  private:
    static constexpr size_t most = 32U << 20U;
    size_t done = 0;
};

// What is wrong, in parts that can be told from one another; of an MTU its line in the original.
using parts_t = std::set<std::string>;
parts_t parts_of(const meaning::difference_t &difference);

// A difference with everything that is told of it.
std::string all_words(const meaning::difference_t &difference);

struct judged_t {
    judged_t(const meaning::original_t &original, std::string result,
             std::span<const std::string_view> route);

    // Everything that is told, notes too.
    parts_t told() const;

    const std::string text;
    const meaning::side_t side; // points into the text
    const differences_t differences;
    parts_t wrong;    // parts of what lines are wanted for
    parts_t warnings; // codes of the rest
};

// Nothing is wrong that was not wrong before.
bool is_better(const judged_t &old, const judged_t &now);

// No line is new among those that the release does not read. One difference tells of many of them.
bool reads_as_much(const judged_t &old, const judged_t &now);

bool includes(const parts_t &all, const parts_t &some);
bool any_of(const parts_t &some, const parts_t &all);

// Several differences as one: what one class lost another may have got.
meaning::difference_t together(const std::vector<const meaning::difference_t *> &parts);

} // namespace infraconvert::mending
