#include "audit/findings.h"

#include "base/messages.h"

#include <algorithm>
#include <strings.h>

namespace infraconvert {

const char *severity_name(severity_t severity) {
    constexpr const char *names[] = {"error", "warning", "note"};
    return names[static_cast<size_t>(severity)];
}

std::span<const finding_kind_t> finding_kinds() { return finding_kind_table; }

namespace {

template<typename kind_t>
const kind_t *named(std::span<const kind_t> table, const std::string &code) {
    const auto kind = std::find_if(table.begin(), table.end(), [&](const kind_t &k) {
        return strcasecmp(k.code, code.c_str()) == 0;
    });
    return kind == table.end() ? nullptr : &*kind;
}

} // namespace

const finding_kind_t *finding_kind_named(const std::string &code) {
    return named<finding_kind_t>(finding_kind_table, code);
}

const retired_kind_t *retired_kind_named(const std::string &code) {
    return named<retired_kind_t>(retired_kind_table, code);
}

namespace {

constexpr std::string_view blanks = " \t\r";

} // namespace

stanzas_t::stanzas_t(const lines_t &lines) {
    first_lines.reserve(lines.size());
    for (size_t i = 0; i < lines.size(); i++) {
        const bool opens = i == 0 || blanks.find(lines[i].front()) == blanks.npos;
        first_lines.push_back(opens ? i : first_lines.back());
    }
}

std::string stanzas_t::first_line(size_t number, const lines_t &shown) const {
    const std::string_view line = without_newline(shown[first_lines[number - 1]]);
    return std::string(line.substr(0, line.find_last_not_of(blanks) + 1));
}

std::string place_of(const finding_t &finding, const shown_text_t &before,
                     const shown_text_t &after) {
    const bool original = !finding.before.empty();
    const auto &evidence = original ? finding.before : finding.after;
    const shown_text_t &text = original ? before : after;
    return evidence.empty() ? "" : text.stanzas.first_line(evidence[0].number, text.lines);
}

bool is_open_error(const finding_t &finding) {
    return finding.kind->severity == severity_t::error && !finding.accepted;
}

finding_count_t count_findings(const std::vector<finding_t> &findings) {
    using enum severity_t;
    finding_count_t count;
    for (const finding_t &finding : findings) {
        const bool open = !finding.accepted;
        count.errors += open && finding.kind->severity == error;
        count.warnings += open && finding.kind->severity == warning;
        count.notes += open && finding.kind->severity == note;
        count.agreed += !open;
    }
    return count;
}

std::string count_text(const finding_count_t &count) {
    std::string text;
    const auto add = [&](size_t number, const char *one) {
        if (number > 0)
            text += (text.empty() ? "" : ", ") + counted(number, one);
    };
    add(count.errors, "error");
    add(count.warnings, "warning");
    add(count.notes, "note");
    if (count.agreed > 0)
        text += (text.empty() ? "" : ", ") + std::to_string(count.agreed) + " agreed";
    return text.empty() ? "no findings" : text;
}

} // namespace infraconvert
