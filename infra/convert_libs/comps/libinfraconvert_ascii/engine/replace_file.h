// Replacing the contents of a file as a whole: begin, write, then commit, or cancel by destruction.
//
// The new contents go to a file beside the target, ".NAME.infraconvert-RANDOM", with mode 0600. The
// commit gives it the target's owner, access list, extended attributes, flags and mode, in this
// order, so that nobody may read it meanwhile who must not; syncs it, renames it over the target
// and syncs the directory. Whatever fails before the rename, the target stays as it was and the
// file beside it is gone; only a power cut or a kill leaves it behind. A symbolic link is followed
// and stays.
//
// The file beside is locked as long as its writer lives. Whoever next replaces the same target
// removes what is left behind: files with such a name, of the caller or of the target's owner,
// whose lock is free. Where a file system knows no locks nothing is removed.
//
// The target is written in place, and synced, where it cannot be replaced or would become another
// file by it:
//   - it has more than one hard link, or is not a regular file;
//   - its name behind the symbolic links cannot be told, its directory cannot be opened, or no file
//     can be made there;
//   - its owner, mode, access list, an extended attribute or a flag cannot be given to another
//   file;
//   - the rename is refused, as for a file that is a mount point of its own, or in a directory that
//     only takes new names (where the file beside it then stays).
// Room for the new contents is reserved first where the file system can, and a failure puts the old
// contents back. What can tear a target that is written in place is a kill, a power cut, or a
// failure that also meets the attempt to put them back.
//
// One failure leaves the new contents: a directory that cannot be synced after the rename. They are
// whole; whether they outlast a power cut is not known.
#pragma once

#include "engine/file.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace engine {

// What may be asked of a replacement beyond the ordinary.
struct replace_rules_t {
    // Who may do what with the new contents.
    enum class rights_t {
        of_target, // as before; a new file: what the umask and the directory give
        of_source, // what `source` allows, but never more than the target did; its attributes too.
                   // The owner's alone where owner and group cannot be given
        of_owner,  // the owner's alone, and no more than the target allowed
    };
    rights_t rights = rights_t::of_target;
    int source = -1;          // an open file, not owned
    bool keeps_times = false; // of the source
    bool must_be_new = false; // EEXIST where the target exists
    bool follows_link = true; // else ELOOP where the target is a symbolic link
    // Called directly before the first byte of the commit, after which the target is no longer what
    // it was: the rename, or the first write in place. Returns false, with errno, to cancel. May be
    // called again, where the rename is refused and the target is then written in place; may throw.
    std::function<bool()> before_first_byte = {};
    // Asked about the file that was replaced, once the target's name is the new one's: whether it
    // is what the new contents were made from. When not, the two are exchanged again, and the
    // commit fails with ESTALE. Not asked where a file system cannot exchange two files, nor of a
    // target that is written in place.
    std::function<bool(int replaced)> is_expected = {};
};

class replace_file_t {
  public:
    replace_file_t() = default;
    explicit replace_file_t(replace_rules_t how) : rules(std::move(how)) {}
    replace_file_t(const replace_file_t &) = delete;
    replace_file_t &operator=(const replace_file_t &) = delete;
    ~replace_file_t();

    // Each returns false with errno set; the object is then only good for destruction.

    // `path` need not exist; nobody sees it before the commit then, which fails with EEXIST when
    // somebody else has made it meanwhile. It must be writable for the caller even where it will be
    // replaced.
    bool begin(const char *path);
    bool write(std::string_view bytes);
    bool commit();

  private:
    bool open_target(const char *path);
    bool find_name();
    bool find_new_name();
    bool open_beside();
    bool claim_beside(std::string name);
    bool hold_lock() const;
    void give_up_beside();
    bool take_over_attributes() const;
    bool take_over_rights() const;
    mode_t narrowed(mode_t mode) const;
    bool narrow_target() const;
    bool keep_old_contents();
    bool allow_first_byte() const;
    bool start_in_place();
    bool reserve(off_t size);
    bool write_in_place(std::string_view bytes);
    bool copy_in_place();
    bool finish_in_place();
    void put_old_contents_back() const;
    bool rename_over_target();
    bool keep_if_expected();

    const replace_rules_t rules = {};
    file_t target;           // open for writing; not open: it does not exist
    file_t directory;        // of the target
    file_t beside;           // the file that will replace the target; not open: write in place
    file_t beside_lock;      // the same, to hold its lock when it is closed
    std::string target_path; // as it was given
    std::string target_name, beside_name; // within the directory; no name beside: nothing to remove
    struct stat status = {};              // of the target
    off_t written = 0;                    // in place
    std::optional<std::string> old_contents; // where it will be written in place
    bool touched = false;                    // in place, and not finished
};

} // namespace engine
