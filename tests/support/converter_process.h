// One call of the library in a process of its own: fresh state, captured output, and logs that land
// in a private directory instead of /mnt/pss and /bootflash.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace support {

struct outcome_t {
    bool crashed = false;
    int status = 0; // the low 8 bits of what the call returned
    std::string output, errors;
    std::map<std::string, std::string> logs; // by file name, such as "npiv.log"
};

// Runs `call` in a child process. `logs_open` false makes every log fail to open.
outcome_t run_in_process(const std::function<int()> &call, bool logs_open = true);

// Ends a forked process. Nothing of the program that forked it is run, but that coverage counters
// are kept where there are any.
[[noreturn]] void leave_process(int status);

// Leads the logs of this process, and of those that it forks, into `directory`.
void lead_logs_to(const std::string &directory);

// A directory below the system's temporary one, gone with its owner.
class temporary_directory_t {
  public:
    temporary_directory_t();
    ~temporary_directory_t();
    temporary_directory_t(const temporary_directory_t &) = delete;
    temporary_directory_t &operator=(const temporary_directory_t &) = delete;
    const std::string &path() const { return name; }

  private:
    std::string name;
};

std::string read_file(const std::string &path);
void write_file(const std::string &path, std::string_view bytes);

// Log texts with every address in place of "<ptr>", so that two runs compare equal.
std::string without_addresses(std::string_view log);

} // namespace support
