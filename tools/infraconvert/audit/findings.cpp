#include "audit/findings.h"

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

finding_count_t count_findings(const std::vector<finding_t> &findings) {
    using enum severity_t;
    finding_count_t count;
    for (const finding_t &finding : findings) {
        count.errors += finding.kind->severity == error;
        count.warnings += finding.kind->severity == warning;
        count.notes += finding.kind->severity == note;
    }
    return count;
}

std::string count_text(const finding_count_t &count) {
    std::string text;
    const auto add = [&](size_t number, const char *one) {
        if (number > 0)
            text += (text.empty() ? "" : ", ") + std::to_string(number) + ' ' + one +
                    (number > 1 ? "s" : "");
    };
    add(count.errors, "error");
    add(count.warnings, "warning");
    add(count.notes, "note");
    return text.empty() ? "no findings" : text;
}

} // namespace infraconvert
