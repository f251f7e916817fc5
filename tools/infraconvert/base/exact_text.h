// Texts in JSON that may hold bytes which are no UTF-8, such as the names of files. JSON cannot
// hold these: the text shows U+FFFD in their place, and its exact bytes stand beside it in base64,
// under its key and "_base64". A list of texts has a list beside it.
#pragma once

#include "base/base64.h"
#include "base/quoting.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace infraconvert {

// The document as text, on one line or with an indentation.
template<class Json> std::string dumped(const Json &document, int indent = -1) {
    return document.dump(indent, ' ', false, Json::error_handler_t::replace);
}

// The exact bytes of a text, or of each text of a list, as they stand beside it; null where it
// needs none.
template<class Json> Json exact_beside(const Json &value) {
    const auto is_inexact = [](const Json &text) {
        return text.is_string() && !is_utf8(text.template get_ref<const std::string &>());
    };
    if (is_inexact(value))
        return base64(value.template get_ref<const std::string &>());
    if (!value.is_array() || std::none_of(value.begin(), value.end(), is_inexact))
        return nullptr;
    Json list = Json::array();
    for (const Json &text : value)
        list.push_back(base64(text.template get<std::string>()));
    return list;
}

// Gives every text of the document, at any depth, its exact bytes where it needs them.
template<class Json> void add_exact_bytes(Json &document) {
    std::vector<std::pair<std::string, Json>> added;
    for (const auto &[key, value] : document.items()) {
        Json exact = document.is_object() ? exact_beside<Json>(value) : Json();
        if (!exact.is_null())
            added.emplace_back(key + "_base64", std::move(exact));
        else if (value.is_structured())
            add_exact_bytes(value);
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

template<class Json>
std::vector<std::string> exact_list(const Json &object, const std::string &key) {
    const auto exact = object.find(key + "_base64");
    if (exact == object.end())
        return object.at(key).template get<std::vector<std::string>>();
    std::vector<std::string> texts;
    for (const Json &text : *exact)
        texts.push_back(from_base64(text.template get<std::string>()));
    return texts;
}

} // namespace infraconvert
