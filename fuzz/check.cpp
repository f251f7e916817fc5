#include "check.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace fuzz {

void claim(bool holds, const char *what) {
    if (holds)
        return;
    fprintf(stderr, "broken claim: %s\n", what);
    abort();
}

double processor_time() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::string read_file(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

place_t::place_t() {
    std::string pattern = std::filesystem::temp_directory_path() / "infraconvert-fuzz-XXXXXX";
    claim(mkdtemp(pattern.data()) != nullptr, "there is room for temporary files");
    directory = pattern;
    std::filesystem::create_directory(directory + "/ascii");
    claim(freopen((directory + "/output").c_str(), "w", stdout) != nullptr, "output can be led");
}

place_t::~place_t() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

std::string place_t::configuration() const { return read_file(directory + "/ascii/system.cfg"); }

void place_t::set_configuration(std::string_view bytes) const {
    std::ofstream(directory + "/ascii/system.cfg", std::ios::binary) << bytes;
}

std::string place_t::taken_output() const {
    fflush(stdout);
    std::string output = read_file(directory + "/output");
    claim(ftruncate(fileno(stdout), 0) == 0, "output can be emptied");
    rewind(stdout);
    return output;
}

bool place_t::holds_only_the_configuration() const {
    const std::filesystem::directory_iterator entries(directory + "/ascii");
    return std::distance(begin(entries), end(entries)) == 1;
}

} // namespace fuzz
