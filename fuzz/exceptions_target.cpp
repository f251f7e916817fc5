// The reader of agreed exceptions. An input is
//
//     the name of a configuration
//     the place of a finding in it
//     a file of exceptions ...
//
// Whatever it holds, the file is read, or an error names a line of it; and the line that is offered
// for a finding agrees to this finding.

#include "check.h"

#include "base/errors.h"
#include "window/exceptions.h"

#include <algorithm>
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

bool names_a_line(std::string_view error) {
    constexpr std::string_view word = "agreed, line ";
    const size_t at = error.find(word);
    return at != error.npos && error.size() > at + word.size() && isdigit(error[at + word.size()]);
}

void mark(const std::string &text, const std::string &configuration,
          std::vector<finding_t> &findings) {
    std::ofstream(exceptions_file(), std::ios::binary) << text;
    try {
        exceptions_t agreed({"@" + exceptions_file()}, day);
        agreed.mark(configuration, findings);
        for (const std::string &told : agreed.idle())
            fuzz::claim(names_a_line(told), "what is idle is told of with its line");
    } catch (const input_error_t &e) {
        fuzz::claim(names_a_line(e.what()), "the error names the line");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    const std::string configuration = line_of(rest), place = line_of(rest);
    if ((configuration + place).find('\0') != std::string::npos)
        return 0; // which no name holds, and no configuration that is read
    std::vector<finding_t> findings = findings_at(place);
    mark(std::string(rest), configuration, findings);

    findings = findings_at(place);
    mark(exceptions_for(configuration, findings), configuration, findings);
    fuzz::claim(std::all_of(findings.begin(), findings.end(),
                            [](const finding_t &f) { return f.accepted.has_value(); }),
                "the lines that are offered agree to the findings");
    return 0;
}
