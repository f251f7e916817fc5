// An original before its conversion, written otherwise: the same configuration in words that the
// converters take as they are meant.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert::mending {

struct respelling_t {
    std::string text;  // of the whole configuration; the original's where there is nothing to do
    std::string words; // what was done, for people
};

// Maps, attachments, VLANs and the features' lines as a switch writes them: two blanks in front of
// a line of a body, four in front of an action, one between words, nothing that means nothing
// between them, no map on the first line, and a newline behind each line.
respelling_t in_written_form(std::string_view text, std::string_view release);

// Names of maps that hold a keyword, under another name: "policy-map-a" is "policy_map_a".
respelling_t with_plain_names(std::string_view text, std::string_view release);

// Fabric extender ports with "switchport mode fex-fabric" right ahead of "fex associate".
respelling_t with_fabric_order(std::string_view text, std::string_view release);

// Maps without their descriptions, which mean nothing.
respelling_t without_descriptions(std::string_view text, std::string_view release);

// Without what does nothing because what it names is not there: classes without a class-map, and
// attachments of policy-maps without classes. They are missed, though, and have to come back.
respelling_t without_idle_lines(std::string_view text, std::string_view release);

// Maps of one first line as one, and class-maps and policy-maps in this order between everything
// else and the interfaces. Attachments to the system stand ahead of them, where converters pass
// them over: some fail because of them, and they can be typed again.
respelling_t in_written_order(std::string_view text);

} // namespace infraconvert::mending
