#include "conversion/version_line.h"

#include "base/errors.h"
#include "base/lines.h"
#include "base/messages.h"
#include "conversion/releases.h"
#include "engine/release.h"

#include <string_view>
#include <vector>

namespace infraconvert {

namespace {

// The word behind each "version" that begins a line, and the number of the line.
struct version_line_t {
    std::string release;
    size_t number;
};

std::vector<version_line_t> version_lines(const std::string &configuration) {
    constexpr std::string_view keyword = "version ";
    std::vector<version_line_t> found;
    size_t number = 0;
    for (const std::string_view line : split_lines(configuration)) {
        number++;
        if (!line.starts_with(keyword))
            continue;
        const size_t end = line.find_first_of(" \r\n", keyword.size());
        found.push_back({std::string(line.substr(keyword.size(), end - keyword.size())), number});
    }
    return found;
}

// What the converters make of a release text. A number that they do not read is -1.
engine::release_t as_read(const std::string &text) {
    engine::release_t release;
    release.major = release.minor = release.patch = -1;
    engine::read_release(release, engine::release_format_t::k_train, text.c_str());
    return release;
}

[[noreturn]] void refuse_version_line(const std::string &problem) {
    throw input_error_t(problem + "; name the release with --from");
}

} // namespace

std::string release_of_version_line(const std::string &configuration) {
    const std::vector<version_line_t> lines = version_lines(configuration);
    if (lines.empty())
        refuse_version_line("no \"version\" line says which release wrote it");
    const version_line_t &first = lines.front();
    if (!is_complete_release(first.release)) // not shown: what it is, nobody knows
        refuse_version_line("the \"version\" line " + std::to_string(first.number) +
                            " does not name a release");
    for (const version_line_t &line : lines) {
        if (line.release != first.release)
            refuse_version_line("the \"version\" lines " + std::to_string(first.number) + " and " +
                                std::to_string(line.number) + " contradict one another");
    }
    return first.release;
}

bool names_other_release(const std::string &configuration, const std::string &from) {
    const std::vector<version_line_t> lines = version_lines(configuration);
    if (lines.empty())
        return false;
    const engine::release_t wrote = as_read(lines.front().release);
    return wrote.patch >= 0 && engine::triple(wrote) != engine::triple(as_read(from));
}

void compare_with_version_line(const std::string &configuration, const std::string &from) {
    if (!names_other_release(configuration, from))
        return;
    // Not a word that merely begins like a release: what it is, nobody knows.
    const std::string version = version_lines(configuration).front().release;
    message("warning: the configuration says that " +
            (is_complete_release(version) ? "release " + version : "another release") +
            " wrote it, not " + from);
}

} // namespace infraconvert
