// The words of the QoS part of the configuration language.
#pragma once

#include <cstdint>
#include <string_view>

// Headers at a line start begin with the newline in front of their line.
constexpr uint32_t newline_length = 1;

constexpr std::string_view class_default = "class-default";
constexpr std::string_view class_fcoe = "class-fcoe";
constexpr std::string_view class_ip_multicast = "class-ip-multicast";
constexpr std::string_view class_all_flood = "class-all-flood";

// The special classes have class-maps in typed text only, and come first in a policy.
constexpr bool qoscnv_is_special_class(std::string_view name) {
    return name == class_ip_multicast || name == class_all_flood;
}

constexpr std::string_view type_qos = "type qos";
constexpr std::string_view match_any = "match-any ";

// Words of a typed map or class line: the type and the name.
constexpr int type_and_name = 2;

// Types of an action; those of a class, class-map or policy-map are a set of them.
constexpr uint8_t QOSCNV_TYPE_NONE = 0;    // no recognised action
constexpr uint8_t QOSCNV_TYPE_QOS = 1;     // classification: set qos-group
constexpr uint8_t QOSCNV_TYPE_QUEUING = 2; // scheduling: bandwidth, priority
constexpr uint8_t QOSCNV_TYPE_UF = 4;      // unified fabric, written as "type network-qos"

// Words of the type with the bits QOSCNV_TYPE_QUEUING (2) or QOSCNV_TYPE_UF (4).
constexpr const char *qoscnv_type_words(uint8_t type) {
    return type == QOSCNV_TYPE_QUEUING ? "type queuing" : "type network-qos";
}

// qos-groups of class-maps; user classes of the system policy have 2 to 5.
constexpr uint8_t qos_group_class_default = 0;
constexpr uint8_t qos_group_class_fcoe = 1;
constexpr uint8_t qos_group_first_user = 2;
constexpr uint8_t qos_group_last_user = 5;
constexpr uint8_t qos_group_unassigned = 255;

constexpr bool qoscnv_is_class_line(std::string_view line) { return line.starts_with("  class"); }
