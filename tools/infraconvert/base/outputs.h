// What a command writes into files, all of it but its private copies.
//
// A file is there whole or not at all. It may be read by those who may read the configuration that
// it was made from, or by its owner alone where there are several; never by more, whatever the
// folder and an earlier file of that name allow. No output is a file that the command reads, by
// whatever name, and no two outputs are one file. A symbolic link is followed only where nobody
// else can have put it there.
#pragma once

#include "engine/replace_file.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace infraconvert {

// True for what is no file, such as a pipe: whoever writes it may have to wait, for ever perhaps,
// and must be open to signals.
bool may_wait_for_a_reader(const std::string &path);

// Replaces the contents of `path`, or makes it. Throws usage_error_t when there can be no such
// file, run_error_t when it cannot be written; both name it. Signals wait meanwhile: one that came
// before the first byte of the commit leaves the file as it was, by interrupted_t.
void write_whole(const std::string &path, std::string_view bytes, engine::replace_rules_t rules);

class outputs_t {
  public:
    outputs_t(); // where standard output and error go, no other output may go

    // The command reads `file`, which may be standard_stream; what it writes is made from it.
    void made_from(const std::string &file);
    // The command reads this file too.
    void reads(const std::string &file);
    // The command reads this file, and writes nothing but its standard output.
    static void only_reads(const std::string &file);

    // Tells of an output before the work begins. Throws usage_error_t in the name of the option
    // when it is one of the inputs or another output, or when there can be no such file.
    void expect(const std::string &option, const std::string &path);

    // Makes a folder for outputs unless it is there. Throws usage_error_t when that fails.
    void make_folder(const std::string &path) const;
    // Writes an output. Throws as write_whole does, or when it is one of the inputs.
    void write(const std::string &path, std::string_view bytes) const;

  private:
    // Files, and what they are to the command: known by what they are and by their full names,
    // which stay when somebody replaces them.
    struct files_t {
        std::map<std::pair<dev_t, ino_t>, std::string> by_identity;
        std::map<std::string, std::string> by_name;

        void add(const std::string &path, const std::string &what);
        void add_open(int descriptor, const std::string &what);
        std::string find(const std::string &path) const; // empty: none of them
    };

    // What keeps the path from being an output, or empty.
    std::string obstacle(const std::string &path) const;

    files_t inputs, outputs;
    std::string source; // the one file that all is made from
    size_t sources = 0;
};

} // namespace infraconvert
