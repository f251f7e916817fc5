// What stands in the maps of a result, so that fewer lines of a fix leave the same behind.
#pragma once

#include "meaning/model.h"

#include <set>
#include <string>

namespace infraconvert::mending {

class maps_t {
  public:
    maps_t(const meaning::model_t &original, const meaning::model_t &result);

    // Everything that the other has is here, and no further map that the original does not have.
    bool stands_for(const maps_t &other) const;

    // Classes without a class-map: no fix makes one by taking the class-map away.
    bool orphans_are_among(const maps_t &other) const;

  private:
    using names_t = std::set<std::string>;

    names_t names, foreign; // of all maps; of those that the original does not have
    names_t lines;          // match lines, and actions by class
    names_t orphans;
};

} // namespace infraconvert::mending
