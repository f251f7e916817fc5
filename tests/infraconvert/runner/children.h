// Processes that a process started.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/types.h>
#include <vector>

namespace support {

inline std::vector<pid_t> children_of(pid_t process) {
    std::vector<pid_t> children;
    std::error_code gone;
    const std::filesystem::path tasks = "/proc/" + std::to_string(process) + "/task";
    for (const auto &task : std::filesystem::directory_iterator(tasks, gone)) {
        std::ifstream list(task.path() / "children");
        for (pid_t child; list >> child;)
            children.push_back(child);
    }
    return children;
}

// A process that has ended may wait long for whoever adopted it to take notice.
inline bool has_ended(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    return !std::getline(status, line) || line.find(") Z ") != line.npos;
}

} // namespace support
