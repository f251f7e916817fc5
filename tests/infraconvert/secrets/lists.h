// Lines of configurations with secrets, by kind, in the files of lists/: {secret} stands for one. A
// line there that begins with a blank or with "|", which is not a part of it, belongs to the line
// above it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace support {

constexpr std::string_view secret_place = "{secret}";

// Each entry of the lists: a line, and those that belong to it.
inline std::vector<std::string> entries_with_secrets(const std::filesystem::path &directory) {
    std::vector<std::string> entries;
    std::vector<std::filesystem::path> files(std::filesystem::directory_iterator(directory), {});
    std::sort(files.begin(), files.end());
    for (const auto &file : files) {
        std::ifstream lines(file);
        for (std::string line; std::getline(lines, line);) {
            const bool belongs = line.find_first_of(" \t|") == 0;
            if (!belongs || entries.empty())
                entries.emplace_back();
            entries.back() += line.substr(line.starts_with('|')) + '\n';
        }
    }
    return entries;
}

inline std::string with_secret(std::string text, std::string_view secret) {
    for (size_t at = 0; (at = text.find(secret_place, at)) != text.npos; at += secret.size())
        text.replace(at, secret_place.size(), secret);
    return text;
}

} // namespace support
