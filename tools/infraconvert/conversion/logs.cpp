#include "conversion/logs.h"

#include "base/files.h"

#include <algorithm>

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
std::string shown_log(const std::string &log, const mask_t *mask) {
    const std::string text = folded(log);
    return mask ? mask->logs(text) : text;
}

} // namespace

std::string readable_logs(const logs_t &logs, const mask_t *mask) {
    std::string text;
    for (const auto &[name, log] : logs) {
        text += "==> " + name + " <==\n" + shown_log(log, mask);
        if (!text.ends_with('\n'))
            text += '\n';
    }
    return text;
}

void keep_logs(const logs_t &logs, const fs::path &destination, const mask_t *mask,
               const outputs_t &outputs) {
    outputs.make_folder(destination);
    for (const auto &[name, log] : logs) {
        outputs.make_folder((destination / name).parent_path());
        outputs.write(destination / name, mask ? shown_log(log, mask) : log);
    }
}

} // namespace infraconvert
