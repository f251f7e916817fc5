#include "window/exceptions.h"

#include "base/errors.h"
#include "base/files.h"
#include "base/quoting.h"
#include "base/suggest.h"
#include "secrets/masked_text.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <fnmatch.h>
#include <set>

namespace infraconvert {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::string_view pattern_bytes = "*?[\\";
constexpr const char *any = "*";
constexpr size_t fields = 5;

std::string trimmed(std::string_view text) {
    const size_t first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    return std::string(text.substr(0, text.find_last_not_of(blanks) + 1));
}

std::array<std::string, fields> fields_of(std::string_view line) {
    std::array<std::string, fields> found;
    for (size_t i = 0; i < fields; i++) {
        const size_t end = i + 1 < fields ? std::min(line.find('|'), line.size()) : line.size();
        found[i] = trimmed(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return found;
}

bool is_date(const std::string &text) {
    tm date = {};
    const char *end = strptime(text.c_str(), "%Y-%m-%d", &date);
    return end && *end == '\0' && text.size() == std::string_view("2000-01-01").size();
}

bool is_pattern(std::string_view text) { return text.find_first_of(pattern_bytes) != text.npos; }

// Calls `visit` with the path and each end of it behind a slash, until it returns true.
template<typename visit_t> bool any_end_of(const std::string &path, visit_t visit) {
    for (size_t from = 0;; from++) {
        if (visit(path.substr(from)))
            return true;
        from = path.find('/', from);
        if (from == path.npos)
            return false;
    }
}

bool matches_configuration(const std::string &pattern, const std::string &path) {
    return pattern == any || any_end_of(path, [&](const std::string &end) {
               return fnmatch(pattern.c_str(), end.c_str(), FNM_PATHNAME) == 0;
           });
}

bool matches_stanza(const std::string &pattern, const std::string &place) {
    return pattern == any || fnmatch(pattern.c_str(), place.c_str(), 0) == 0;
}

// A text that a pattern meets exactly: itself, but for what has a meaning in patterns or in the
// file, and for what does not show.
std::string pattern_of(const std::string &text) {
    std::string pattern;
    for (size_t i = 0; i < text.size(); i++) {
        if (text.compare(i, masked_mark.size(), masked_mark) == 0) {
            pattern += any;
            i += masked_mark.size() - 1;
        } else if (pattern_bytes.find(text[i]) != pattern_bytes.npos) {
            (pattern += '\\') += text[i];
        } else {
            const auto byte = static_cast<unsigned char>(text[i]);
            const bool is_trimmed = text[i] == ' ' && (i == 0 || i + 1 == text.size());
            pattern += byte < ' ' || text[i] == '|' || is_trimmed ? '?' : text[i];
        }
    }
    return pattern;
}

// The code as the table writes it; empty for one that is not found any more.
std::string known_code(const std::string &given, const std::string &place) {
    if (const finding_kind_t *kind = finding_kind_named(given))
        return kind->code;
    if (retired_kind_named(given))
        return "";
    std::vector<std::string> known;
    for (const finding_kind_t &kind : finding_kinds())
        known.emplace_back(kind.code);
    const std::string text = "unknown finding '" + given + "'" + suggestion(given, known) +
                             " (infraconvert explain lists all)";
    if (place.empty())
        throw usage_error_t("--accept: " + text);
    throw input_error_t(place + ": " + text);
}

exception_t exception_in(std::string_view line, const std::string &place) {
    const auto [code, configuration, stanza, reason, until] = fields_of(line);
    if (!until.empty() && !is_date(until))
        throw input_error_t(place + ": '" + until + "' is no date: write YYYY-MM-DD, or nothing");
    return {known_code(code, place),
            configuration.empty() ? any : configuration,
            stanza.empty() ? any : stanza,
            reason,
            until,
            place};
}

} // namespace

std::string exception_t::in_words() const {
    return code + (configuration == any ? "" : " for " + configuration) +
           (stanza == any ? "" : " in \"" + stanza + '"');
}

exceptions_t::exceptions_t(const std::vector<std::string> &given, std::string day)
    : today(std::move(day)) {
    for (const std::string &word : given) {
        if (word.starts_with("@"))
            read(word.substr(1));
        else
            add({known_code(word, ""), any, any, "", "", ""});
    }
}

void exceptions_t::add(exception_t exception) {
    if (is_pattern(exception.configuration))
        by_pattern.push_back(all.size());
    else
        by_name.emplace(exception.configuration, all.size());
    all.push_back(std::move(exception));
    met.push_back(false);
}

void exceptions_t::read(const std::string &file) {
    const std::string text = read_file(file);
    size_t number = 0;
    for (size_t from = 0; from < text.size();) {
        const size_t end = std::min(text.find('\n', from), text.size());
        const std::string line = trimmed(std::string_view(text).substr(from, end - from));
        from = end + 1;
        number++;
        if (line.empty() || line[0] == '#')
            continue;
        const std::string place = quoted_name(file) + ", line " + std::to_string(number);
        add(exception_in(line, place));
    }
}

bool exceptions_t::has_expired(const exception_t &exception) const {
    return !exception.until.empty() && exception.until < today;
}

void exceptions_t::mark_by(size_t index, std::vector<finding_t> &findings) {
    const exception_t &exception = all[index];
    if (has_expired(exception))
        return;
    for (finding_t &finding : findings) {
        if (finding.kind->code != exception.code ||
            !matches_stanza(exception.stanza, finding.place))
            continue;
        if (!finding.accepted)
            finding.accepted = {exception.reason, exception.until};
        const std::lock_guard guard(lock);
        met[index] = true;
    }
}

void exceptions_t::mark(const std::string &configuration, std::vector<finding_t> &findings) {
    if (findings.empty())
        return;
    any_end_of(configuration, [&](const std::string &end) {
        const auto [first, last] = by_name.equal_range(end);
        for (auto each = first; each != last; each++)
            mark_by(each->second, findings);
        return false;
    });
    for (const size_t index : by_pattern) {
        if (matches_configuration(all[index].configuration, configuration))
            mark_by(index, findings);
    }
}

std::vector<std::string> exceptions_t::idle() const {
    std::vector<std::string> told;
    for (size_t i = 0; i < all.size(); i++) {
        const exception_t &exception = all[i];
        if (exception.place.empty())
            continue;
        const std::string about = exception.place + ": the exception " + exception.in_words();
        if (exception.code.empty())
            told.push_back(exception.place + ": this code is not found any more");
        else if (has_expired(exception))
            told.push_back(about + " expired after " + exception.until);
        else if (!met[i])
            told.push_back(about + " meets nothing");
    }
    return told;
}

std::string exceptions_for(const std::string &configuration,
                           const std::vector<finding_t> &findings) {
    std::set<std::string> lines;
    for (const finding_t &finding : findings) {
        if (is_open_error(finding))
            lines.insert(std::string(finding.kind->code) + " | " + pattern_of(configuration) +
                         " | " + (finding.place.empty() ? any : pattern_of(finding.place)) +
                         " |  |\n");
    }
    std::string text;
    for (const std::string &line : lines)
        text += line;
    return text;
}

} // namespace infraconvert
