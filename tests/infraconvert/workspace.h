// A directory of its own in which a test runs the built command, as a user would.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace support {

struct result_t {
    int status; // of the exit; 128 + N when signal N ended it
    std::string out, err;
};

class workspace_t {
  public:
    workspace_t();
    ~workspace_t();
    workspace_t(const workspace_t &) = delete;
    workspace_t &operator=(const workspace_t &) = delete;

    std::filesystem::path path(const std::string &name) const { return directory / name; }
    void write(const std::string &name, const std::string &bytes) const;
    std::string read(const std::string &name) const;
    bool has(const std::string &name) const;
    // Names of all files and directories in it, sorted.
    std::vector<std::string> names() const;

    // What the next runs find: their standard input, and the place of their standard output when it
    // is not captured.
    std::string input;
    std::string output_file;
    // Runs as a user without rights. Check can_drop_rights() first.
    bool unprivileged = false;
    std::vector<std::string> environment; // "NAME=VALUE", added to the test's own

    // Runs infraconvert with these arguments in the directory.
    result_t run(const std::vector<std::string> &arguments) const;
    // Runs any program.
    result_t run_program(const std::vector<std::string> &command) const;

    // True when a program can be run without root's rights and still reach the command.
    bool can_drop_rights() const;

  private:
    void give_to_unprivileged() const;

    const std::filesystem::path directory;
    const std::filesystem::path streams; // what the runs read and write
};

inline bool contains(const std::string &text, const std::string &wanted) {
    return text.find(wanted) != text.npos;
}

std::string command_path();

// examples/switch.cfg, a configuration that every converter has something to do with.
std::string example();

} // namespace support
