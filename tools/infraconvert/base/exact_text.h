// Texts in JSON that may hold bytes which are no UTF-8, such as the names of files. JSON cannot
// hold these: the text shows U+FFFD in their place, and its exact bytes stand beside it in base64,
// under its key and "_base64".
#pragma once

#include "base/quoting.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace infraconvert {

std::string base64(std::string_view bytes);
// Throws input_error_t for what is no base64.
std::string from_base64(const std::string &text);

// Gives every text of the document, at any depth, its exact bytes where it needs them.
template<class Json> void add_exact_bytes(Json &document) {
    std::vector<std::pair<std::string, std::string>> added;
    for (const auto &[key, value] : document.items()) {
        if (value.is_structured())
            add_exact_bytes(value);
        else if (document.is_object() && value.is_string() &&
                 !is_utf8(value.template get_ref<const std::string &>()))
            added.emplace_back(key + "_base64",
                               base64(value.template get_ref<const std::string &>()));
    }
    for (const auto &[key, value] : added)
        document[key] = value;
}

// The bytes of a text that was read with its document. Throws what the library throws when it is
// not there, and as from_base64 does.
template<class Json> std::string exact_bytes(const Json &object, const std::string &key) {
    const auto exact = object.find(key + "_base64");
    return exact == object.end() ? object.at(key).template get<std::string>()
                                 : from_base64(exact->template get<std::string>());
}

} // namespace infraconvert
