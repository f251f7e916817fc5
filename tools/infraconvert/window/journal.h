// What was done with the configurations of a plan, one line of JSON each, in a file that only
// grows:
//
//     {"time": "2027-03-02T01:14:09Z", "what": "begin", "path": ..., "input": ..., "result": ...}
//     {"time": "2027-03-02T01:14:09Z", "what": "converted", "path": ..., ...}
//
// Each line is on stable storage before what follows it is done: "begin" before the original is
// kept and the file replaced, "converted" behind that; in the same way "undoing" and "undone". So
// the last line about a file tells, together with the file itself, all there is to know after a
// kill; a line that a kill or a full disk cut short is none.
#pragma once

#include "engine/file.h"
#include "window/plan.h"
#include "window/plan_folder.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>

namespace infraconvert {

enum class deed_t { begin, converted, undoing, undone };

// The last deed with each configuration.
class last_deeds_t {
  public:
    // Reads the journal, which need not be there before an original is kept. Throws input_error_t,
    // naming a line that is none.
    explicit last_deeds_t(const plan_folder_t &folder);

    // True when the plan has converted the configuration, or begun to, and not taken it back.
    bool stands(const planned_t &planned) const;
    // True when the last deed was begun, and nobody came to say how it ended.
    bool is_open(const planned_t &planned) const;
    // How many configurations stand converted, or begun.
    size_t standing() const;
    // The bytes up to the end of the last whole line.
    off_t size() const { return whole_size; }

  private:
    struct last_t {
        deed_t deed;
        std::string result_digest;
    };
    void read_file_of(const plan_folder_t &folder);
    void read_line(const std::string &line);

    std::map<std::string, last_t> by_path;
    off_t whole_size = 0;
};

// The journal of a run that changes something. There is one such run at a time.
class journal_t {
  public:
    // Throws run_error_t when another run has it, or when it cannot be written, else as
    // last_deeds_t.
    explicit journal_t(const plan_folder_t &folder);

    const last_deeds_t &before() const { return *deeds; } // this run

    // On return the line is on stable storage. May be called by several threads. Throws
    // run_error_t.
    void add(deed_t deed, const planned_t &planned);

  private:
    const std::string file;
    engine::file_t opened;
    std::unique_ptr<last_deeds_t> deeds;
    std::mutex lock;
};

} // namespace infraconvert
