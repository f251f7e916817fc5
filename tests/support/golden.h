// The golden conversions: the folders SERVICE/FROM__TO/CASE of tests/golden.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace support {

struct golden_t {
    std::filesystem::path folder;
    std::string service, from, to;

    bool fails() const;
    bool is_trap() const;       // by its name: the audit finds an error
    std::string before() const; // in.cfg
    std::string after() const;  // out.cfg; in.cfg where the conversion changes nothing
};

// All of them, in the order of their folders.
std::vector<golden_t> golden_cases();

} // namespace support
