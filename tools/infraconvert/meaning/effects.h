// What a packet meets on the switch: the effect table of a model.
//
// A row says at which place, in which direction, what traffic meets which effect. Names of maps and
// numbers of groups are means and stand in no row, so two configurations with equal tables make the
// same switch. What gives no row is content (content.h).
#pragma once

#include "meaning/model.h"

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace infraconvert::meaning {

// What is matched: a set of criteria, of which a packet meets one. "cos 5"; "cos 5 and dscp 46" for
// two lines that it must meet both; "class-default" for the rest. Sorted, each once; empty:
// nothing.
using traffic_t = std::vector<std::string>;
std::string in_words(const traffic_t &traffic);

// Of a class in a policy that classifies by itself: an untyped one, or one of type qos or
// control-plane.
traffic_t traffic_of(const model_t &model, std::string_view type, std::string_view class_name);

// The traffic of each qos-group under a policy of type qos, which may be null.
class groups_t {
  public:
    groups_t(const model_t &model, const policy_t *policy);
    // Empty when no class sets the group.
    const traffic_t &of(std::string_view number) const;
    bool sets(std::string_view class_name) const; // the policy puts this class into a group

  private:
    std::unordered_map<std::string_view, traffic_t> groups;
    std::unordered_set<std::string_view> set;
};

// The policy of type qos in force at a place: its own, else the system's; null without one.
const policy_t *policy_in_force(const model_t &model, std::string_view place);

// The traffic that a class of type queuing or network-qos gets.
traffic_t queued_traffic(const model_t &model, const groups_t &groups, std::string_view type,
                         std::string_view class_name);

struct row_t {
    std::string place;     // "system", "control-plane", or the first line of the stanza
    std::string direction; // "input", "output", or empty where there is none
    std::string traffic;
    std::string effect; // "priority", "mtu 9000", "goes with cos 4"

    std::string keyword;          // of the effect: "mtu"
    std::optional<long> mtu = {}; // its number
    // Where it comes from.
    std::string policy, type, class_name;
    uint32_t attachment_line = 0, class_line = 0, action_line = 0;

    bool is_marking() const { return keyword == "set qos-group"; }
};

// True when both say the same, wherever it stands in the text.
bool same_row(const row_t &one, const row_t &other);
// "Ethernet1/1 output", "system".
std::string place_in_words(const row_t &row);
// "Ethernet1/1 output: priority for cos 5".
std::string in_words(const row_t &row);

// Each row once, by place, direction, traffic and effect.
using table_t = std::vector<row_t>;
table_t effects_of(const model_t &model);

// ---- marking.cpp

// A class of an interface's policy, and the traffic that it shares a queue with.
struct mark_t {
    const class_t *from;
    const action_t *action;
    traffic_t traffic, joins; // `joins` is empty where nothing on the system has this number
};

// Where a system's policy of one type puts traffic; what interfaces say is compared with it.
class system_marking_t {
  public:
    system_marking_t(const model_t &model, std::string_view type);

    // Of a policy at an interface; none when it puts all traffic where the system's puts it.
    std::vector<mark_t> marks(const policy_t &policy) const;

  private:
    traffic_t untyped_group(std::string_view number, const traffic_t &own) const;
    bool repeats(const policy_t &policy, const std::vector<mark_t> &marks) const;
    void read(const policy_t &policy);

    const model_t &model;
    const policy_t *policy;
    const groups_t groups;                                         // of type qos
    std::unordered_map<std::string_view, const class_t *> setting; // untyped: the first that does
    std::set<traffic_t> traffic;                                   // of its classes
    std::set<traffic_t> grouped; // of those that it puts into groups of their own
};

} // namespace infraconvert::meaning
