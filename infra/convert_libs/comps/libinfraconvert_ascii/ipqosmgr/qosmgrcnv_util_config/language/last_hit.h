// The last place of a text, such as the last header of a kind, while passes edit in front of it and
// add further ones behind it. It is searched for once and kept up to date by the edits.
#pragma once

#include "ipqosmgr/qosmgrcnv_engine.h"

#include <string>

class last_hit_t {
  public:
    explicit last_hit_t(const std::string &text) : wanted(text) {}

    const std::string wanted;

    // Start of the last `wanted`, else nowhere.
    engine::position find();
    // Must be told of every edit. `may_bring` is false when the edit cannot have made a `wanted`.
    void edited(const engine::edit_t &edit, bool may_bring);

  private:
    void search(engine::position from, engine::position before);

    bool known = false;
    engine::position hit = engine::nowhere;
    engine::position end = 0; // of the text, when the hit was known last
};
