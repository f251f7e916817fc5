#include "support/converter_process.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace support {

std::string read_file(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void write_file(const std::string &path, std::string_view bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

temporary_directory_t::temporary_directory_t() {
    std::string pattern = std::filesystem::temp_directory_path() / "infraconvert-XXXXXX";
    if (!mkdtemp(pattern.data()))
        abort();
    name = pattern;
}

temporary_directory_t::~temporary_directory_t() {
    std::error_code ignored;
    std::filesystem::remove_all(name, ignored);
}

std::string without_addresses(std::string_view log) {
    static const std::regex address("(at |end_cp )(0x[0-9a-f]+|\\(nil\\))");
    return std::regex_replace(std::string(log), address, "$1<ptr>");
}

} // namespace support
