#include "mending/judged.h"

#include "mending/mend.h"

#include <algorithm>

namespace infraconvert::mending {

using meaning::difference_t;

namespace {

bool is_about_sizes(finding_code_t code) { return code == "IC053" || code == "IC054"; }

} // namespace

parts_t parts_of(const difference_t &difference) {
    parts_t parts;
    if (is_about_sizes(difference.code)) {
        for (const uint32_t line : difference.before)
            parts.insert("mtu of line " + std::to_string(line));
        return parts;
    }
    for (const meaning::row_change_t &change : difference.rows)
        parts.insert((change.gained ? "new " : "gone ") + meaning::in_words(change.row));
    if (parts.empty() || difference.words.find("does not read") != std::string::npos)
        parts.insert(std::string(difference.code.name()) + ' ' +
                     difference.words.substr(0, difference.words.find(';')));
    return parts;
}

std::string all_words(const difference_t &difference) {
    return difference.code.name() + (' ' + difference.words);
}

judged_t::judged_t(const meaning::original_t &original, std::string result,
                   std::span<const std::string_view> route)
    : text(std::move(result)), side(text, route.back(), route.front()),
      differences(original.compare(side, route)) {
    for (const difference_t &difference : differences) {
        if (wants_lines(difference))
            wrong.merge(parts_of(difference));
        else if (difference.severity() == severity_t::warning)
            warnings.insert(difference.code.name());
    }
}

parts_t judged_t::told() const {
    parts_t all;
    for (const difference_t &difference : differences)
        all.insert(all_words(difference));
    return all;
}

namespace {

// What may be told anew without anything being worse: sizes of what was brought back, maps that are
// attached nowhere and go where the release refuses them, and what the original has already.
bool may_be_new(const std::string &code) {
    return code.starts_with("IC05") || code == "IC027" || code == "IC011" || code == "IC013";
}

bool tells_of_many(finding_code_t code) {
    return code == "IC043" || code == "IC044" || code == "IC046" || code == "IC047";
}

} // namespace

bool includes(const parts_t &all, const parts_t &some) {
    return std::includes(all.begin(), all.end(), some.begin(), some.end());
}

bool any_of(const parts_t &some, const parts_t &all) {
    return std::any_of(some.begin(), some.end(),
                       [&](const auto &part) { return all.contains(part); });
}

bool reads_as_much(const judged_t &old, const judged_t &now) {
    const auto unread_lines = [](const judged_t &judged) {
        parts_t lines;
        for (const difference_t &difference : judged.differences) {
            if (!difference.is_error() || !tells_of_many(difference.code))
                continue;
            for (const meaning::line_t &line : judged.side.model.reading.lines) {
                if (std::binary_search(difference.after.begin(), difference.after.end(),
                                       line.number))
                    lines.emplace(line.text);
            }
        }
        return lines;
    };
    return includes(unread_lines(old), unread_lines(now));
}

bool is_better(const judged_t &old, const judged_t &now) {
    return includes(old.wrong, now.wrong) && reads_as_much(old, now) &&
           std::all_of(now.warnings.begin(), now.warnings.end(), [&](const std::string &code) {
               return old.warnings.contains(code) || may_be_new(code);
           });
}

difference_t together(const std::vector<const difference_t *> &parts) {
    difference_t all = *parts.front();
    for (size_t i = 1; i < parts.size(); i++) {
        all.rows.insert(all.rows.end(), parts[i]->rows.begin(), parts[i]->rows.end());
        all.before.insert(all.before.end(), parts[i]->before.begin(), parts[i]->before.end());
        all.after.insert(all.after.end(), parts[i]->after.begin(), parts[i]->after.end());
    }
    std::sort(all.before.begin(), all.before.end());
    std::sort(all.after.begin(), all.after.end());
    return all;
}

} // namespace infraconvert::mending
