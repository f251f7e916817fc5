// One text of a comparison: what stands in it, what a packet meets, what its release would not
// read.
#pragma once

#include "meaning/effects.h"
#include "meaning/form.h"
#include "meaning/model.h"

#include <string_view>
#include <vector>

namespace infraconvert::meaning {

struct side_t {
    // `release` reads the text, which must outlive the object; `from` is the one that it comes
    // from.
    side_t(std::string_view text, std::string_view release, std::string_view from)
        : model(text, release, from), table(effects_of(model)), problems(check_form(model)) {}

    bool is_typed() const { return model.dialect.typed; }

    const model_t model;
    const table_t table;
    const std::vector<problem_t> problems;
};

} // namespace infraconvert::meaning
