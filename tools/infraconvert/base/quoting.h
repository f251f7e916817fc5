// Texts that others chose, such as the names of files and the lines of a configuration, where they
// are shown: nothing in them ends a line, forges another or tells a terminal what to do.
#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

// A name as diff, patch and git write it: itself, or between double quotes in the manner of C when
// it holds a control byte, a double quote, a backslash or bytes that are no UTF-8.
std::string quoted_name(std::string_view name);

// A text with its control bytes to be seen: "^[" for the escape byte, "<9B>" for one above 127 and
// for bytes that are no UTF-8. Newlines and tabs stay.
std::string visible(std::string_view text);

// What is said of a file, in words that are the same for all files: "f: is empty" is "is empty",
// and "cannot write f: No space" is "cannot write it: No space".
std::string without_name(const std::string &file, const std::string &said);

bool is_utf8(std::string_view bytes);

} // namespace infraconvert
