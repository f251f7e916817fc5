#include "base/files.h"

#include "base/errors.h"
#include "base/quoting.h"
#include "engine/file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace infraconvert {

namespace {

std::string system_error(const std::string &path) {
    return quoted_name(path) + ": " + strerror(errno);
}

// What is wrong with the file, or with the machine at this moment, by errno.
[[noreturn]] void refuse_to_read(const std::string &path) {
    constexpr int of_the_machine[] = {EMFILE, ENFILE, ENOMEM, ENOBUFS, EAGAIN, ETIMEDOUT};
    if (std::find(std::begin(of_the_machine), std::end(of_the_machine), errno) !=
        std::end(of_the_machine))
        throw run_error_t(system_error(path));
    throw input_error_t(system_error(path));
}

uint64_t most_of_a_configuration = usual_megabytes; // megabytes

[[noreturn]] void refuse_size(const std::string &name) {
    const std::string most = std::to_string(most_of_a_configuration);
    throw input_error_t(quoted_name(name) + ": larger than " + most +
                        " MB, which no switch saves; if this is a configuration, let --max-size " +
                        "say how large it is");
}

std::string read_descriptor(int descriptor, const std::string &name, uint64_t most) {
    struct stat status;
    const bool has_size = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (has_size && static_cast<uint64_t>(status.st_size) > most)
        refuse_size(name);
    std::string bytes;
    const bool complete = engine::read_all(descriptor, [&](std::string_view block) {
        bytes += block;
        return bytes.size() <= most;
    });
    if (bytes.size() > most)
        refuse_size(name);
    if (!complete)
        refuse_to_read(name);
    return bytes;
}

// "line 12, column 3 (byte 345)", the first two counted from 1 as editors do.
std::string place(const std::string &text, size_t at) {
    const auto line = std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(at), '\n') + 1;
    const size_t newline = at == 0 ? text.npos : text.rfind('\n', at - 1);
    const size_t column = newline == text.npos ? at + 1 : at - newline;
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + " (byte " +
           std::to_string(at) + ")";
}

std::string read_file_up_to(const std::string &path, uint64_t most) {
    const engine::file_t file = engine::open_at(AT_FDCWD, path.c_str(), O_RDONLY);
    if (!file.is_open())
        refuse_to_read(path);
    return read_descriptor(file.descriptor(), path, most);
}

void refuse_unconvertible(const std::string &name, const std::string &text) {
    using namespace std::literals;
    if (text.empty())
        throw input_error_t(quoted_name(name) + ": the configuration is empty");
    const size_t at = text.find_first_of("\0\xFF"sv);
    if (at == text.npos)
        return;
    const char *byte = text[at] == '\0' ? "a zero byte" : "a byte 0xFF";
    throw input_error_t(quoted_name(name) + ": " + byte + " at " + place(text, at) +
                        "; the converters would not see, or would lose, what stands behind it");
}

} // namespace

std::string read_file(const std::string &path) { return read_file_up_to(path, UINT64_MAX); }

void set_most_megabytes(uint64_t megabytes) { most_of_a_configuration = megabytes; }

bool holds(int descriptor, std::string_view bytes) {
    const bool equal = engine::read_all(descriptor, [&](std::string_view block) {
        const bool same = bytes.starts_with(block);
        bytes.remove_prefix(same ? block.size() : 0);
        return same;
    });
    return equal && bytes.empty();
}

std::string configuration_file(const std::string &path) {
    std::error_code ignored;
    if (path != standard_stream && std::filesystem::is_directory(path, ignored))
        return std::filesystem::path(path) / configuration_in_directory;
    return path;
}

std::filesystem::path folder_of(const std::string &file) {
    const std::filesystem::path folder = std::filesystem::path(file).parent_path();
    return folder.empty() ? "." : folder;
}

shared_text_t read_configuration(const std::string &file) {
    const bool standard = file == standard_stream;
    const std::string name = standard ? "standard input" : file;
    const uint64_t most = most_of_a_configuration * 1024 * 1024;
    auto text = std::make_shared<const std::string>(
        standard ? read_descriptor(STDIN_FILENO, name, most) : read_file_up_to(file, most));
    refuse_unconvertible(name, *text);
    return text;
}

} // namespace infraconvert
