// What was looked at and agreed on: findings that do not stop a conversion.
//
//     # code | configuration | stanza | reason | until
//     IC041 | access-*.cfg | interface Ethernet1/* | marking moves to campus | 2027-03-31
//     IC021 | *            | *                     | unused maps
//
// Patterns are those of a shell; "*" alone, or nothing, is any. A configuration is meant by its
// path or by the end of it behind a slash, and "*" does not cross a slash. An exception holds up to
// the end of its last day.
#pragma once

#include "audit/findings.h"

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace infraconvert {

struct exception_t {
    std::string code, configuration, stanza; // patterns; "*": any
    std::string reason, until;               // may be empty; until: YYYY-MM-DD
    std::string place;                       // "agreed.txt, line 3"; empty: the command line

    std::string in_words() const; // "IC041 for access-*.cfg in \"interface Ethernet1/*\""
};

class exceptions_t {
  public:
    exceptions_t() = default;
    // `given` are codes, and names of files with "@" in front. `today` is YYYY-MM-DD. Throws
    // usage_error_t for a code that does not exist, and input_error_t for a file that cannot be
    // read as exceptions, naming its line.
    exceptions_t(const std::vector<std::string> &given, std::string today);

    // Marks the findings of a configuration that were agreed on. They must not be masked. May be
    // called by several threads.
    void mark(const std::string &configuration, std::vector<finding_t> &findings);

    // What is to be said of the exceptions that stand in files, once all is marked: those that no
    // finding met, and those that have expired. One for each, "agreed.txt, line 3: ...".
    std::vector<std::string> idle() const;

  private:
    void read(const std::string &file);
    void add(exception_t exception);
    bool has_expired(const exception_t &exception) const;
    void mark_by(size_t index, std::vector<finding_t> &findings);

    std::string today;
    std::vector<exception_t> all;
    std::vector<char> met;                                // by index; guarded by `lock`
    std::unordered_multimap<std::string, size_t> by_name; // those that name one configuration
    std::vector<size_t> by_pattern;                       // all others
    std::mutex lock;
};

// A line of a file of exceptions for each stanza with an open error of this configuration, each
// once. What is masked in a finding is a "*".
std::string exceptions_for(const std::string &configuration,
                           const std::vector<finding_t> &findings);

} // namespace infraconvert
