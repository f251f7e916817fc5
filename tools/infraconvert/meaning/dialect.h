// What a release reads: the differences between releases as one record.
#pragma once

#include <compare>
#include <string_view>

namespace infraconvert::meaning {

// 5.0(3)U2(1) is {5, 0, 3, 'U', 2, 1}; without a letter the last three are 0.
struct release_t {
    int major = 0, minor = 0, patch = 0;
    char letter = 0;
    int number = 0, build = 0;
};
// What cannot be read is 0. Letters behind a number, as in 5.0(3a), are passed over.
release_t read_release(std::string_view text);

// Major, minor and patch, which decide almost everything.
struct triple_t {
    int major, minor, patch;
    auto operator<=>(const triple_t &) const = default;
};
triple_t triple(const release_t &release);

constexpr triple_t first_typed = {4, 1, 3};        // maps and attachments have types from here on
constexpr triple_t first_short_mtu = {4, 2, 1};    // counts an MTU without 38 bytes of headers
constexpr triple_t first_front_word = {5, 0, 2};   // match-any, match-all
constexpr triple_t first_fabric_order = {5, 0, 3}; // "switchport mode fex-fabric" comes first

// How FC port security is switched on, and how its commands begin.
enum class fc_security_t {
    enable,     // "port-security enable", "port-security ..."
    feature,    // "feature port-security", "port-security ..."
    fc_feature, // "feature fc-port-security", "fc-port-security ..."
};

struct dialect_t {
    bool typed;         // class-map type qos NAME
    bool front_word;    // class-map type qos match-any NAME
    bool control_plane; // class-map type control-plane NAME
    bool npiv_feature;  // feature npiv; else npiv enable
    bool mac_by_blank;  // mac address-table beside mac-address-table
    bool fabric_order;  // switchport mode fex-fabric ahead of fex associate
    bool single_fcoe;   // fcoe in a stanza of one VLAN only
    fc_security_t fc_security;
};

// `from` is the release that wrote a configuration first: a VLAN's fcoe must stand alone in
// releases 5 for one that comes from 4.1, on whatever way. The same release twice for one as it is.
dialect_t dialect_of(const release_t &release, const release_t &from);

} // namespace infraconvert::meaning
