// The private folder beside a plan, for its owner alone:
//
//     window.json
//     window.json.private/
//       key          without which the plan's digests tell nothing about a configuration
//       originals/   for the way back, each under the digest of its bytes
//       journal      what was done; see journal.h
#pragma once

#include <string>
#include <string_view>

namespace infraconvert {

class plan_folder_t {
  public:
    // Of this plan. Makes nothing, and reads nothing.
    explicit plan_folder_t(std::string plan_file);

    // Makes what is not there yet: the folder, and a key. Throws as open() does, or run_error_t.
    void make();
    // The folder alone. Returns whether it was not there.
    bool make_folder();
    // Reads the key. Throws input_error_t when there is none, or when others may get at the folder.
    void open();

    // With the plan's key, which make() or open() has read.
    std::string digest(std::string_view bytes) const;

    // What tells this key from another without telling the key.
    std::string key_digest() const { return digest("key"); }

    const std::string &plan() const { return plan_file; }
    const std::string &path() const { return folder; }
    std::string key_file() const { return folder + "/key"; }
    std::string journal() const { return folder + "/journal"; }
    std::string original(const std::string &digest) const { return originals() + '/' + digest; }

    // True when originals are kept, or their folder cannot be looked into.
    bool keeps_originals() const;
    // Makes the folder of the originals. What root makes in somebody's folder is made his. Throws
    // run_error_t.
    void make_originals() const;
    // Keeps these bytes, whose digest it is, on stable storage. May be called by several threads,
    // also with the same bytes. Throws run_error_t in words that are the same for all originals.
    void keep_original(const std::string &digest, std::string_view bytes) const;
    // What was kept. Throws input_error_t where it is gone, cannot be read, or is not what it was.
    std::string read_original(const std::string &digest) const;

    // A file's name as the plan holds it: from the plan's folder, so that both can be moved.
    std::string name_in_plan(const std::string &file) const;
    // The file behind such a name, as one can open it from here.
    std::string file(const std::string &name_in_plan) const;

  private:
    std::string originals() const { return folder + "/originals"; }
    bool is_of_another_than_root() const;
    void check_folder() const;
    bool keeps_original(const std::string &digest) const;

    const std::string plan_file, folder;
    std::string key;
};

} // namespace infraconvert
