// A file that is read, thought about, and then replaced: whoever else does the same with it is kept
// off, and what others did to it is noticed.
#pragma once

#include "engine/file.h"

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace infraconvert {

class locked_file_t {
  public:
    // Opens the file and locks it as flock(2) does. Throws input_error_t when it cannot be read,
    // run_error_t when somebody else has locked it. Where a file system knows no locks there is
    // none.
    explicit locked_file_t(const std::string &file);

    // Throws run_error_t unless the path still names this very file, untouched since it was locked,
    // and the file holds these bytes.
    void look_again(std::string_view expected) const;

    // True when `replaced` is this very file, also by another name now, and holds these bytes.
    bool is(int replaced, std::string_view expected) const;

    int descriptor() const { return opened.descriptor(); }

  private:
    void open(const std::string &file);

    const std::string path;
    engine::file_t opened;
    struct stat status = {};
};

} // namespace infraconvert
