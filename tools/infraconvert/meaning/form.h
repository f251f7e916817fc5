// Would the release read every line of a configuration that the model knows?
#pragma once

#include "meaning/model.h"

#include <string>
#include <utility>
#include <vector>

namespace infraconvert::meaning {

enum class fault_t {
    untyped_text,      // maps and attachments without a type where the release writes types
    typed_text,        // with one where it knows none
    control_plane,     // a type of map that the release does not know yet
    unknown_type,      // of a map or an attachment: no release knows it
    front_words,       // match-any or match-all in front of a class-map's name
    attachment_form,   // a direction missing or too much, or a type that may not stand there
    second_attachment, // of one type and direction at one place
    class_without_map, // and not a class that the switch knows by itself
    attachment_without_map,
    empty_class_map, // of a class of an attached policy
    action_of_other_type,
    match_of_other_type, // qos-groups are set in type qos and matched in the others
    spelling,            // of a command
    fcoe_not_alone,      // in a stanza with more than its one VLAN
    fabric_order,        // "fex associate" ahead of "switchport mode fex-fabric"
    stray_line,          // a line of a map, a class or an attachment where none may stand
    taken_back,          // "no" in front of a map or an attachment
    odd_blank,           // a character that looks like a blank and is none
    map_line,            // a line that no map of this kind has
    class_line,          // a class line in another form than its policy-map's type asks for
    no_name,
    vlan_list,
    vlan_zero,
    carriage_returns, // told once, never an error
    no_last_newline,  // the same
};

// Maps in the form of the other model. The release that is named is wrong, or nothing converted
// them.
constexpr bool is_other_model(fault_t fault) {
    return fault == fault_t::untyped_text || fault == fault_t::typed_text;
}

// One kind of fault of one subject, with all lines that it concerns.
struct problem_t {
    fault_t fault;
    std::string subject; // the same in two texts when it is the same problem: "class-map voice"
    std::string words;   // what is wrong, in a sentence without its end
    std::vector<uint32_t> lines = {};
    size_t weight = 0;    // more in the result than in the original: the conversion made it worse
    bool of_maps = false; // of another model: class-maps or policy-maps are, not only
                          // what attaches them
    bool goes_with_another = false; // which tells enough

    // What does not work because of it; empty strings for what it does not concern.
    struct touched_t {
        std::string place, policy, class_name;
        auto operator<=>(const touched_t &) const = default;
    };
    std::vector<touched_t> touches = {};
};

std::vector<problem_t> check_form(const model_t &model);

// Maps that nothing uses: class-maps that no policy-map names, policy-maps attached nowhere.
struct unused_t {
    std::string title; // "policy-map type qos marking"
    uint32_t line;
};
std::vector<unused_t> unused_maps(const model_t &model);

} // namespace infraconvert::meaning
