// What stands in a configuration, taken apart: class-maps, policy-maps, attachments, features,
// VLANs, fabric extender ports, and every other line under its stanza. Nothing is skipped.
//
// A model keeps what the text says, also what its release would not read; form.h judges that.
#pragma once

#include "meaning/abbreviations.h"
#include "meaning/dialect.h"
#include "meaning/reading.h"

#include <bitset>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace infraconvert::meaning {

// A name behind "type"; empty in the untyped form.
namespace types {
constexpr std::string_view none = "", qos = "qos", queuing = "queuing", network = "network-qos",
                           control_plane = "control-plane";
}

// Maps of these types say what happens to qos-groups, and get their traffic by them.
constexpr bool is_by_group(std::string_view type) {
    return type == types::queuing || type == types::network;
}

// Classes that a switch knows without a class-map.
namespace classes {
constexpr std::string_view rest = "class-default", fcoe = "class-fcoe",
                           multicast = "class-ip-multicast", flood = "class-all-flood";
}
bool is_predefined(std::string_view class_name);

struct criterion_t {
    std::string text; // "cos 5" of "match cos 5"
    uint32_t line;
};

struct group_t {
    std::string number; // as it is written
    uint32_t line;
};

// All stanzas of one type and name.
struct class_map_t {
    std::string_view type, name;
    std::vector<uint32_t> headers;
    std::vector<criterion_t> matches;
    std::vector<group_t> groups; // of "match qos-group"
    bool all = false;            // match-all: a packet must meet every line
};

enum class action_kind_t { group, scheduling, network, other };

struct action_t {
    action_kind_t kind;
    std::string keyword; // "mtu", "set cos": a later action with the same replaces an earlier one
    std::string text;    // the whole action, one blank between words
    uint32_t line;
    std::optional<long> mtu = {}; // of "mtu 9000"
    // The number of "set qos-group 2", as it is written.
    std::string_view group() const;
};

// Which of a list of maps or classes have a name.
class names_index_t {
  public:
    void add(std::string_view name, uint32_t index) { by_name[name].push_back(index); }
    std::span<const uint32_t> of(std::string_view name) const;

  private:
    std::unordered_map<std::string_view, std::vector<uint32_t>> by_name;
};

struct class_t {
    std::string_view name;
    std::vector<uint32_t> lines;
    std::vector<action_t> actions; // those that count
};

struct policy_t {
    std::string_view type, name;
    std::vector<uint32_t> headers;
    std::vector<class_t> classes = {}; // in the order of their first lines
    names_index_t class_names = {};

    const class_t *find(std::string_view class_name) const;
    bool has_actions() const;
};

enum class place_kind_t { system, interface, control_plane };

struct attachment_t {
    std::string place; // "system", or the first line of the stanza
    place_kind_t kind;
    std::string_view type, direction, name;
    uint32_t line;
};

// A line whose form does not depend on the release: every release refuses it.
struct misfit_t {
    enum kind_t {
        no_name,    // a map, class or attachment without a name
        stray_line, // a line of a map, class or attachment where none may stand
        map_line,   // a line that no map of its kind has
        class_type, // the class line names another type than its policy-map
        taken_back, // "no" in front of a map or an attachment
        odd_blank,  // a character that looks like a blank and is none
        vlan_list,  // a list of VLANs that does not read
        vlan_zero,  // the same, because of VLAN 0 or of a number left out
    } kind;
    uint32_t line;
    std::string subject;
};

// A class-map's first line with words between type and name.
struct front_words_t {
    std::string_view type, name;
    words_t words;
    uint32_t line;
};

struct description_t {
    std::string owner; // "class-map voice"
    std::string_view text;
    uint32_t line;
};

struct feature_t {
    bool on = false;
    uint32_t line = 0; // the last that says so
};

constexpr size_t vlan_numbers = 4096;
using vlans_t = std::bitset<vlan_numbers>;

struct vlan_stanza_t {
    vlans_t vlans;
    uint32_t line;
    std::vector<uint32_t> fcoe; // lines that say it
    std::vector<line_t> other;  // the rest of the body
    bool has_fcoe = false;      // at its end
    bool loses_fcoe = false;    // it has "no fcoe"
};

// "fex associate 101" or "switchport mode fex-fabric".
struct fabric_line_t {
    std::string text; // one blank between words
    uint32_t line;
};

// The lines that the model knows nothing more about, under one stanza.
struct block_t {
    std::vector<uint32_t> headers; // none for lines ahead of the first stanza, and of maps
    std::string_view header;       // the first of them, as it is written
    std::vector<line_t> lines;
    std::vector<fabric_line_t> fabric;
};

// A command whose spelling differs between releases, as it is written.
struct spelled_t {
    enum command_t { npiv, fc_feature, fc_command, mac } command;
    std::string_view text;
    uint32_t line;
};

struct model_t {
    // `release` is the one that reads the text, `from` the one that it comes from.
    model_t(std::string_view text, std::string_view release, std::string_view from);

    const class_map_t *class_map(std::string_view type, std::string_view name) const;
    const policy_t *policy(std::string_view type, std::string_view name) const;
    // What is attached; null when it is not defined.
    const policy_t *policy_of(const attachment_t &attachment) const;
    bool is_attached(const policy_t &policy) const { return attached_policies.contains(&policy); }
    // The first attachment of this type at a place; null when there is none.
    const attachment_t *attached(std::string_view place, std::string_view type) const;
    // The policy-maps of a name, of whatever type, as indices.
    std::span<const uint32_t> policies_named(std::string_view name) const {
        return policy_names.of(name);
    }

    reading_t reading;
    release_t release;
    dialect_t dialect;

    std::vector<class_map_t> class_maps;
    std::vector<policy_t> policies;
    std::vector<attachment_t> attachments;
    std::vector<front_words_t> front_words;
    std::vector<description_t> descriptions;                // in maps, where they mean nothing
    std::map<std::string, feature_t, std::less<>> features; // in whatever spelling: "npiv"
    std::vector<vlan_stanza_t> vlans;
    std::map<std::string, block_t, std::less<>> blocks; // by first line, brought to one spelling
    std::vector<spelled_t> spelled;
    std::vector<misfit_t> misfits;

    // ---- for finding things by their name
    names_index_t class_map_names, policy_names;
    std::unordered_map<std::string, uint32_t> first_attachments; // by place and type
    std::unordered_set<const policy_t *> attached_policies;
};

inline std::string place_key(std::string_view place, std::string_view part) {
    return std::string(place) + '\n' + std::string(part);
}

// The VLANs that a configuration defines, and those with FCoE.
vlans_t all_vlans(const model_t &model);
vlans_t fcoe_vlans(const model_t &model);

// ---- how a model is read, one function for each kind of stanza

bool is_map(const words_t &header);
bool is_interface(const words_t &header);
void read_map(model_t &model, const stanza_t &stanza, const words_t &header);
// False when the line is none.
bool read_attachment(model_t &model, const stanza_t &stanza, const line_t &line,
                     const words_t &words);
bool read_feature(model_t &model, const stanza_t &stanza, const words_t &header);
bool read_vlans(model_t &model, const stanza_t &stanza, const words_t &header);
block_t &block_of(model_t &model, const std::string &key);

} // namespace infraconvert::meaning
