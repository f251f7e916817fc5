// What the parts of a comparison share. Each part looks at one kind of difference and adds it.
#pragma once

#include "meaning/difference.h"
#include "meaning/mtu.h"
#include "meaning/side.h"

#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace infraconvert::meaning {

using lines_t = std::vector<uint32_t>;

struct comparison_t {
    // Both sides must outlive the object.
    comparison_t(const side_t &original, const side_t &result,
                 std::span<const std::string_view> texts);

    difference_t &add(finding_code_t code, const std::string &words, const lines_t &before_lines,
                      const lines_t &after_lines);

    bool crosses_models() const { return before.is_typed() != after.is_typed(); }

    const std::vector<std::string_view> releases;
    std::vector<release_t> route;
    const side_t &before, &after;
    std::vector<difference_t> differences;

    // A fault, told by the difference that is added next: rows that are lost because of it are told
    // with that.
    void add_cause(const problem_t &problem);
    // The difference that explains why a row is not there any more; none when none does.
    std::optional<size_t> cause_of(const row_t &row) const;
    // True when a fault of the result is about the class-map of this name.
    bool is_told(std::string_view class_map) const;
    // True when what gives the row stands in the form of the other model.
    bool is_unconverted(const row_t &row) const;

    // Values of MTUs that are not the same size, told together at the end.
    struct mtu_change_t {
        mtu_fate_t fate;
        std::string words;
        uint32_t before, after; // lines
        auto operator<=>(const mtu_change_t &) const = default;
    };
    struct mtu_line_t {
        long value;
        uint32_t line;
    };
    std::set<mtu_change_t> mtus;
    void note_mtu(const std::string &where, mtu_line_t old, mtu_line_t now);

  private:
    // By what a fault touches: place, policy-map and class, with what it does not concern empty.
    using touched_t = std::unordered_map<std::string, size_t>;
    touched_t causes, unconverted;
    std::unordered_set<std::string> told_class_maps;
};

// In this order.
void compare_form(comparison_t &comparison);
void compare_rows(comparison_t &comparison);
void compare_order(comparison_t &comparison);
void compare_groups(comparison_t &comparison);
void compare_content(comparison_t &comparison);
void compare_features(comparison_t &comparison);
void compare_vlans(comparison_t &comparison);
void compare_blocks(comparison_t &comparison);
void tell_mtus(comparison_t &comparison);

} // namespace infraconvert::meaning
