// Configurations made by chance, and what the library makes of them.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace meaning_test {

using lines_t = std::vector<std::string>; // each with its newline

struct conversion_t {
    std::string before, after;
    std::vector<std::string> route; // two releases
    std::string words() const { return route[0] + " to " + route[1] + '\n' + before; }
};

struct chance_t {
    explicit chance_t(unsigned seed) : engine(seed) {}
    // From 0 to `end` - 1.
    size_t below(size_t end) { return engine() % end; }
    bool one_in(size_t many) { return below(many) == 0; }

  private:
    std::mt19937 engine;
};

// A QoS configuration as the release writes it, with stanzas that are none of QoS's; sometimes with
// what does not survive a conversion.
std::string configuration(chance_t &chance, bool typed);

// `count` conversions by the QoS converter that did not fail, over several pairs of releases.
std::vector<conversion_t> conversions(unsigned seed, size_t count);

// The golden conversions of all services that are no traps.
std::vector<conversion_t> golden_conversions();

// Errors of the judgement.
size_t errors_of(const conversion_t &conversion);

lines_t lines_of(const std::string &text);
std::string joined(const lines_t &lines);

} // namespace meaning_test
