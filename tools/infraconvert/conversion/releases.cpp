// The converters take any text for a release and go on with the numbers that they happened to read,
// so a slip of the keyboard would silently choose other rules.

#include "conversion/releases.h"

#include "base/errors.h"
#include "base/messages.h"
#include "conversion/release_check.h"
#include "engine/release.h"

#include <regex>

namespace infraconvert {

namespace {

constexpr const char *accepted_forms = "accepted forms: 4.1(3), 5.0(3)U2(1), 4.1(3)K2(1)";

// Numbers of at most nine digits fit the converters' 32 bits.
const std::regex &complete_release() {
    static const std::regex form(
        R"(\d{1,9}\.\d{1,9}\(\d{1,9}[a-z]*\)([A-Z]\d{1,9}\(\d{1,9}[a-z]*\))?)");
    return form;
}

// What the converters make of a release text. A number that they do not read is -1.
engine::release_t as_read(const std::string &text) {
    engine::release_t release;
    release.major = release.minor = release.patch = -1;
    engine::read_release(release, engine::release_format::k_train, text.c_str());
    return release;
}

bool readable(const std::string &text) {
    const engine::release_t release = as_read(text);
    return release.major >= 0 && release.minor >= 0 && release.patch >= 0;
}

} // namespace

void check_release(const char *option, const std::string &text) {
    if (text.empty())
        throw usage_error_t(std::string("missing ") + option + " RELEASE (" + accepted_forms + ")");
    if (!readable(text))
        throw usage_error_t(std::string(option) + ": '" + text +
                            "' is not a release that a converter can read; " + accepted_forms);
    if (!std::regex_match(text, complete_release()))
        message(std::string("warning: ") + option + ": '" + text +
                "' is an unusual release; the converters read it only as far as they know it (" +
                accepted_forms + ")");
}

release_pair_t checked_releases(const release_pair_t &written) {
    check_release("--from", written.from);
    check_release("--to", written.to);
    return written;
}

void compare_with_version_line(const std::string &configuration, const std::string &from) {
    const std::string start = "\nversion ";
    const size_t line = configuration.starts_with(start.substr(1)) ? 0 : configuration.find(start);
    if (line == configuration.npos)
        return;
    const size_t word = configuration.find(' ', line) + 1;
    const std::string version =
        configuration.substr(word, configuration.find_first_of(" \r\n", word) - word);
    if (!readable(version) || engine::triple(as_read(version)) == engine::triple(as_read(from)))
        return;
    // Not a word that merely begins like a release: what it is, nobody knows.
    const bool complete = std::regex_match(version, complete_release());
    message("warning: the configuration says that " +
            (complete ? "release " + version : "another release") + " wrote it, not " + from);
}

} // namespace infraconvert
