// Which files a command is about, the same for every verb.
//
// A file that is named by itself is always taken. Within a folder stands much that is no switch:
// what is hidden, what is a backup, and what does not look like a configuration is passed by, and
// told. What cannot be looked at is taken, so that reading it becomes a result like any other.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace infraconvert {

// What was passed by, by the reason, with the first few names.
class passed_by_t {
  public:
    enum class why_t { hidden, link, backup, no_configuration, repeated };

    void add(why_t why, const std::string &name);
    // "1 hidden entry (.git); 2 backups (a.bak, b.bak)"; empty when nothing was.
    std::string in_words() const;

  private:
    struct passed_t {
        size_t count = 0;
        std::vector<std::string> examples;
    };
    std::map<why_t, passed_t> passed;
};

struct configurations_t {
    std::vector<std::string> files; // each once, in the order given; within a folder by name
    passed_by_t passed_by;
};

// The configurations that the paths stand for: a folder for its ascii/system.cfg when it has one,
// else for all below it. "-" is standard input. One file of several names comes once, below folders
// not by that of a link if there is another.
configurations_t find_configurations(const std::vector<std::string> &paths);

// The paths in a file, one a line, or separated by zero bytes; "-" reads them from standard input.
// Throws input_error_t.
std::vector<std::string> listed_paths(const std::string &list);

} // namespace infraconvert
