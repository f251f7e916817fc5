// What the fuzz targets share: a place for the configuration, and claims that abort the run, so
// that the fuzzer and the replay see a broken one as they see a crash.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

// Aborts with `what` unless `holds`.
void claim(bool holds, const char *what);

// Seconds of the processor that this process has used, which other processes do not lengthen.
double processor_time();

// A private directory with the configuration file in it, and standard output led into a file beside
// it, both gone when the process ends.
class place_t {
  public:
    place_t();
    ~place_t();
    place_t(const place_t &) = delete;
    place_t &operator=(const place_t &) = delete;

    const char *path() const { return directory.c_str(); }
    std::string log_path() const { return directory + "/log"; }
    std::string configuration() const;
    void set_configuration(std::string_view bytes) const;
    // What was written on standard output since the last call.
    std::string taken_output() const;
    // False when something beside the configuration file was left there.
    bool holds_only_the_configuration() const;

  private:
    std::string directory;
};

std::string read_file(const std::string &path);

} // namespace fuzz
