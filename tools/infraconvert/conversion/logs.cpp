#include "conversion/logs.h"

#include "base/files.h"

#include <algorithm>
#include <vector>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;

// Leaves out the messages of the QoS converter that show one byte of the saved text each: they
// follow one another without a newline of their own.
std::string folded(const std::string &log) {
    constexpr std::string_view announced = "qoscnv_print_ascii_file(): Printing ASCII file ...\n";
    constexpr std::string_view message = "qoscnv_print_ascii_file(): ";
    const size_t at = log.find(announced);
    if (at == log.npos)
        return log;
    const size_t first = at + announced.size();
    size_t end = first, bytes = 0;
    for (; log.compare(end, message.size(), message) == 0; bytes++)
        end += message.size() + 1;
    if (bytes == 0)
        return log;
    return log.substr(0, first) + "(left out: " + std::to_string(bytes) +
           " messages, one for each byte of the saved text)\n" +
           log.substr(std::min(end, log.size()));
}

// The log for people to read.
std::string shown_log(const fs::path &log, const mask_t *mask) {
    const std::string text = folded(read_log(log));
    return mask ? mask->logs(text) : text;
}

std::vector<fs::path> logs_in(const fs::path &directory) {
    std::vector<fs::path> logs;
    for (const auto &entry : fs::directory_iterator(directory)) {
        if (entry.path().extension() == ".log")
            logs.push_back(entry.path());
    }
    std::sort(logs.begin(), logs.end());
    return logs;
}

} // namespace

std::string read_log(const fs::path &file) {
    std::error_code ignored;
    return fs::exists(file, ignored) ? read_file(file) : "";
}

std::string readable_logs(const fs::path &directory, const mask_t *mask) {
    std::string text;
    for (const fs::path &log : logs_in(directory)) {
        text += "==> " + log.filename().string() + " <==\n" + shown_log(log, mask);
        if (!text.ends_with('\n'))
            text += '\n';
    }
    return text;
}

void keep_logs(const fs::path &directory, const fs::path &destination, const mask_t *mask,
               const outputs_t &outputs) {
    outputs.make_folder(destination);
    for (const fs::path &log : logs_in(directory))
        outputs.write(destination / log.filename(), mask ? shown_log(log, mask) : read_log(log));
}

} // namespace infraconvert
