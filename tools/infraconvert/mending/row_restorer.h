// Rows of the effect table, in the lines of the target.
#pragma once

#include "mending/restore.h"

#include <optional>
#include <set>

namespace infraconvert::mending {

// Collects the lines for rows, one after the other; each counts on those before it.
class row_restorer_t {
  public:
    row_restorer_t(const scene_t &looked_at, names_t takes);

    void lose(const meaning::row_t &row); // one that the result has and the original has not
    void restore(const meaning::row_t &row);
    candidate_t result() { return {why_not.empty() ? commands : commands_t(), why_not}; }

  private:
    static constexpr int first_free_group = 2, last_free_group = 5;
    static constexpr const char *alike =
        "releases before 4.1(3) schedule the system's input and output alike";
    static constexpr std::string_view goes_with = "goes with ", in_group = "qos-group ";

    // ---- what both forms share
    std::optional<meaning::attachment_t> attachment_at(uint32_t line) const;
    static std::string attachment_words(const meaning::attachment_t &attachment);
    static std::string class_line(std::string_view type, std::string_view name);
    std::string action_of(const meaning::row_t &row) const;
    std::string policy_for(const meaning::row_t &row, std::string_view type,
                           std::string_view direction);
    std::string name_for(const meaning::row_t &row) const;
    bool has_policy(std::string_view name) const;
    std::string class_for(std::string_view type, const meaning::row_t &row);
    std::string make_class_map(std::string_view type, const std::string &name);
    std::string make_joint_class_map(std::string_view type, const meaning::row_t &row);
    void restore_marking(const meaning::row_t &row);
    void restore_control_plane(const meaning::row_t &row);
    void attach(const meaning::row_t &row, const std::string &words);

    // ---- untyped
    void restore_untyped(const meaning::row_t &row);
    bool says_other_direction(const meaning::row_t &row) const;
    bool both_directions(const meaning::row_t &row) const;
    bool was_there(const meaning::row_t &row) const;
    std::string untyped_group(const meaning::row_t &row);
    std::string make_queue(const meaning::row_t &row, const std::string &joins,
                           std::string_view policy_name);
    std::string original_number(const meaning::row_t &row) const;

    // ---- typed
    void restore_typed(const meaning::row_t &row);
    void restore_other(const meaning::row_t &row);
    std::string queued_class(std::string_view type, const meaning::row_t &row);
    const meaning::policy_t *sorting_policy(const meaning::row_t &row);
    bool is_used(std::string_view type, const std::string &name) const;
    std::string group_with(const meaning::groups_t &groups, const meaning::row_t &row);
    void put_into_group(const meaning::row_t &row, int number);
    std::string typed_group(const meaning::row_t &row);

    const scene_t &scene;
    const names_t names;
    const bool apart; // from the policies that are attached
    commands_t commands;
    std::string why_not;
    std::set<int> taken; // also by traffic that goes into a group by its number
};

} // namespace infraconvert::mending
