// A search that is asked again from ever later positions, while its hits may lie far ahead:
//
//     class-map a      asked here: "  description" is found below c
//     class-map b      asked here: the same, without a look at the text
//     class-map c
//       description x
//
// Each byte of the text is looked at once, however many maps stand in front of a hit or behind the
// last one.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/language/words.h"

class search_ahead_t {
  public:
    explicit search_ahead_t(std::string_view text) : wanted(text) {}

    // First `wanted` that begins at or behind `at`, else nowhere.
    position from(position at);
    // Must be told of each insertion and deletion at `at`.
    void edited(position at);

  private:
    const std::string_view wanted;
    // Known: no `wanted` begins in [clear_from, clear_to).
    position clear_from = 0;
    position clear_to = 0;
};
