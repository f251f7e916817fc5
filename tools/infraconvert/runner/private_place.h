// Directories for the private copies of configurations.
//
// A configuration holds secrets, so its copies stand where only this user looks, and where possible
// in a file system in memory. What a process that was killed left behind is removed by the next
// one: each place holds a file "in-use" that its owner and all who work for it keep locked, so a
// place whose lock is free has no owner any more.
#pragma once

#include <filesystem>
#include <string>

namespace runner {

// A directory below `parent`, for this user alone, removed with its owner.
class private_place_t {
  public:
    // Throws std::runtime_error when no directory can be made.
    explicit private_place_t(const std::filesystem::path &parent);
    private_place_t(const private_place_t &) = delete;
    private_place_t &operator=(const private_place_t &) = delete;
    ~private_place_t();

    const std::filesystem::path &path() const { return directory; }

  private:
    std::filesystem::path directory;
    int lock = -1;
};

// Removes the places that nobody owns any more, wherever places can stand.
void remove_left_places();

// Where temporary files go: TMPDIR, or else /tmp.
std::filesystem::path temporary_directory();

// A directory of a file system in memory that has room for `bytes`: the temporary one or /dev/shm.
// Empty when there is none.
std::filesystem::path directory_in_memory(uint64_t bytes);

} // namespace runner
