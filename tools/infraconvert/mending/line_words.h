// Lines of a configuration by their words, as far as typing needs to know them.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert::mending {

// A line by its words, one blank between two.
std::string plain(std::string_view line);

// True for a line that is its words, as most first lines of stanzas are.
bool is_plain(std::string_view line);

// False for empty lines and comments.
bool means_something(std::string_view line);

bool starts_stanza(std::string_view line);

// What an action is replaced by: a later one with the same words in front.
std::string keyword_of(std::string_view action);

// "class type qos voice" and "class voice" are one line of a policy-map.
bool is_class_line(std::string_view line);
std::string class_name(std::string_view line);

} // namespace infraconvert::mending
