// Texts for tests from inside.
#pragma once

#include "engine/engine.h"
#include "support/converter_process.h"

#include <gtest/gtest.h>

// Gives an instance a text, with as much room as a load would.
inline void load(engine::engine_t &e, std::string_view bytes) {
    const support::temporary_directory_t place;
    support::write_file(place.path() + "/ascii/system.cfg", bytes);
    ASSERT_EQ(engine::read_ascii_file(e, place.path().c_str()), 0u);
}

inline std::string text_of(const engine::engine_t &e) { return e.text->copy(0, e.text->size()); }
