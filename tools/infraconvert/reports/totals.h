// What all records come to: the end of the stream. It keeps only what it shows, so that it does not
// grow with the number of configurations.
#pragma once

#include "window/audited.h"

#include <map>
#include <string>
#include <vector>

namespace infraconvert {

// A code, and how often it was found.
struct code_count_t {
    const finding_kind_t *kind = nullptr;
    size_t findings = 0, open = 0; // open: not agreed on
    size_t files = 0, open_files = 0, mendable_files = 0;
    std::string example, detail; // the first configuration with an open one, and what is said of it
};

// Configurations of which the same is said, under the first of them.
struct alike_t {
    std::string file, problem, likeness;
    state_t state;
    bool blocked = false; // unusable for the machine's sake
    finding_count_t findings;
    std::vector<std::string> codes; // of open errors
    size_t others = 0;              // besides the first

    // Whether it needs hands more than the other.
    bool is_worse_than(const alike_t &other) const;
};

class totals_t {
  public:
    void add(const audited_t &audited);

    size_t count = 0;
    std::map<state_t, size_t> states;
    std::map<std::string, code_count_t> codes;
    size_t blocked = 0;                     // of the unusable: by the machine
    size_t need_hands = 0, mendable = 0;    // mendable: of those that need hands, by fixes alone
    size_t warned = 0, agreed = 0;          // with warnings, with findings that were agreed on
    std::map<std::string, size_t> verdicts; // on the way back
    std::vector<alike_t> worst;             // of those that need hands, worst first; not all
    std::vector<std::string> idle;          // what is to be said of exceptions

    // Of those that need no hands, the most of which the same is said.
    size_t most_alike() const;

  private:
    void add_codes(const audited_t &audited);
    void add_to_worst(const audited_t &audited);

    std::map<std::string, size_t> likenesses; // of those that need no hands
};

} // namespace infraconvert
