// The reader of agreed exceptions. An input is
//
//     the name of a configuration
//     the place of a finding in it
//     a file of exceptions ...
//
// Whatever it holds, the file is read, or an error names the line that is wrong; and the lines that
// are offered for findings agree to these findings and to no others.

#include "check.h"

#include "base/errors.h"
#include "secrets/masked_text.h"
#include "window/exceptions.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

using namespace infraconvert;

namespace {

constexpr const char *day = "2026-06-30";

std::string exceptions_file() {
    static const fuzz::place_t place;
    return place.path() + std::string("/agreed");
}

std::string line_of(std::string_view &rest) {
    const size_t end = std::min(rest.find('\n'), rest.size());
    const std::string line(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return line;
}

std::vector<finding_t> findings_at(const std::string &place) {
    std::vector<finding_t> findings;
    for (const char *code : {"IC041", "IC043"}) {
        findings.push_back({finding_kind_named(code), "", {}, {}});
        findings.back().place = place;
    }
    return findings;
}

// The line that a message names; 0 for none.
size_t named_line(std::string_view told) {
    constexpr std::string_view word = "agreed, line ";
    const size_t at = told.find(word);
    return at == told.npos ? 0 : strtoul(told.data() + at + word.size(), nullptr, 10);
}

// Marks the findings, and returns 0, or the line that is refused.
size_t mark(const std::string &text, const std::string &configuration,
            std::vector<finding_t> &findings) {
    std::ofstream(exceptions_file(), std::ios::binary) << text;
    try {
        exceptions_t agreed({"@" + exceptions_file()}, day);
        agreed.mark(configuration, findings);
        for (const std::string &told : agreed.idle())
            fuzz::claim(named_line(told) > 0, "what is idle is told of with its line");
    } catch (const input_error_t &e) {
        fuzz::claim(named_line(e.what()) > 0, "the error names a line");
        return named_line(e.what());
    }
    return 0;
}

void comment_out(std::string &text, size_t line) {
    size_t start = 0;
    for (size_t i = 1; i < line; i++) {
        start = text.find('\n', start) + 1;
        fuzz::claim(start > 0, "the line is one of the file");
    }
    text.insert(start, "#");
}

// The file without the lines that are refused is read: none else was wrong.
void mark_without_wrong_lines(std::string text, const std::string &configuration,
                              std::vector<finding_t> &findings) {
    size_t before = 0;
    while (const size_t line = mark(text, configuration, findings)) {
        fuzz::claim(line > before, "a line that was taken out is refused no more");
        comment_out(text, line);
        before = line;
    }
}

bool is_agreed(const finding_t &finding) { return finding.accepted.has_value(); }

void read_what_is_offered(const std::string &configuration, const std::string &place) {
    std::vector<finding_t> findings = findings_at(place), elsewhere = findings_at(place + 'x');
    const std::string offered = exceptions_for(configuration, findings);
    mark(offered, configuration, findings);
    fuzz::claim(std::all_of(findings.begin(), findings.end(), is_agreed),
                "the lines that are offered agree to the findings");
    if (place.empty() || (configuration + place).find(masked_mark) != std::string::npos)
        return; // which is any place, or any name with some text in its middle
    mark(offered, configuration, elsewhere);
    fuzz::claim(std::none_of(elsewhere.begin(), elsewhere.end(), is_agreed),
                "the lines that are offered agree to nothing elsewhere");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    const std::string configuration = line_of(rest), place = line_of(rest);
    if ((configuration + place).find('\0') != std::string::npos)
        return 0; // which no name holds, and no configuration that is read
    std::vector<finding_t> findings = findings_at(place);
    mark_without_wrong_lines(std::string(rest), configuration, findings);
    read_what_is_offered(configuration, place);
    return 0;
}
