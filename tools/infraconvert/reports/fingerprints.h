// Names for findings that stay the same from one audit to the next, wherever the lines stand, so
// that whoever keeps findings knows which are new.
#pragma once

#include "audit/findings.h"

#include <map>
#include <string>

namespace infraconvert {

// Those of one configuration. No two are equal: what is said again is counted.
class fingerprints_t {
  public:
    explicit fingerprints_t(std::string configuration) : file(std::move(configuration)) {}

    std::string of(const finding_t &finding);
    // Of something else that is said about the configuration.
    std::string next(const std::string &said);

  private:
    std::string file;
    std::map<std::string, size_t> seen;
};

} // namespace infraconvert
