// Switches one of many changes on, in a build that holds them all; see mutants.py.

#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

// A change may look odd without being wrong to the compiler.
#pragma GCC diagnostic ignored "-Wparentheses"
#pragma GCC diagnostic ignored "-Wtype-limits"

namespace mutants {

// The environment carries both: what a test starts is changed, and told of, like the test itself.
inline const int chosen = [] {
    const char *number = std::getenv("MUTANT");
    return number ? std::atoi(number) : 0;
}();

// A byte for each change, in a file that the processes of a test share; null when nobody asks.
inline char *const reached = []() -> char * {
    const char *name = std::getenv("MUTANTS_REACHED");
    const int file = name ? open(name, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0)
        return nullptr;
    void *bytes = mmap(nullptr, static_cast<size_t>(lseek(file, 0, SEEK_END)),
                       PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return bytes == MAP_FAILED ? nullptr : static_cast<char *>(bytes);
}();

inline bool on(int number) {
    if (reached)
        reached[number] = 1;
    return number == chosen;
}

} // namespace mutants
