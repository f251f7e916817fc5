// Replacing the contents of a file as a whole: begin, write, then commit, or cancel by destruction.
//
// The new contents go to a file beside the target, ".NAME.infraconvert-PID-N", with mode 0600. The
// commit gives it the target's owner, mode, access list and extended attributes, syncs it, renames
// it over the target and syncs the directory. Whatever fails before the rename, the target stays as
// it was and the file beside it is gone; only a power cut or a kill leaves it behind. A symbolic
// link is followed and stays.
//
// The target is written in place, and synced, where it cannot be replaced or would become another
// file by it:
//   - it has more than one hard link, or is not a regular file;
//   - its name behind the symbolic links cannot be told, its directory cannot be opened, or no file
//     can be made there;
//   - its owner, mode, access list or an extended attribute cannot be given to another file;
//   - the rename is refused, as for a file that is a mount point of its own, or in a directory that
//     only takes new names (where the file beside it then stays).
// Room for the new contents is reserved first where the file system can, and a failure puts the old
// contents back. What can tear a target that is written in place is a kill, a power cut, or a
// failure that also meets the attempt to put them back.
//
// One failure leaves the new contents: a directory that cannot be synced after the rename. They are
// whole; whether they outlast a power cut is not known.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace engine {

class replace_file_t {
  public:
    replace_file_t() = default;
    replace_file_t(const replace_file_t &) = delete;
    replace_file_t &operator=(const replace_file_t &) = delete;
    ~replace_file_t();

    // Each returns false with errno set; the object is then only good for destruction.

    // `path` need not exist. It must be writable for the caller even where it will be replaced.
    bool begin(const char *path);
    bool write(std::string_view bytes);
    bool commit();

  private:
    // An open file that is closed with its owner.
    struct file_t {
        int descriptor = -1;
        ~file_t() { close(); }
        bool is_open() const { return descriptor >= 0; }
        bool close(); // false, with errno, when the system reports an error only now
    };

    bool open_target(const char *path);
    bool find_name();
    bool open_beside();
    bool take_over_attributes() const;
    bool keep_old_contents();
    bool reserve(off_t size);
    bool write_in_place(std::string_view bytes);
    bool copy_in_place();
    bool finish_in_place();
    void put_old_contents_back() const;
    bool rename_over_target();

    file_t target;           // open for writing
    file_t directory;        // of the target
    file_t beside;           // the file that will replace the target; not open: write in place
    std::string target_path; // as it was given
    std::string target_name, beside_name; // within the directory; no name beside: nothing to remove
    struct stat status = {};              // of the target
    bool created = false;                 // the target did not exist
    off_t written = 0;                    // in place
    std::optional<std::string> old_contents; // where it will be written in place
    bool touched = false;                    // in place, and not finished
};

} // namespace engine
