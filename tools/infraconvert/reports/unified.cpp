#include "reports/unified.h"

#include "base/messages.h"
#include "base/quoting.h"
#include "reports/word_diff.h"

#include <algorithm>

namespace infraconvert {

namespace {

constexpr const char *plain = "", *bold = "\033[1m", *cyan = "\033[36m", *red = "\033[31m",
                     *green = "\033[32m", *reset = "\033[0m";

// A range of the script: changes that stand close together, with their context.
struct hunk_t {
    size_t first, end;
};

std::vector<hunk_t> hunks_of(const script_t &script, size_t context) {
    std::vector<hunk_t> hunks;
    for (size_t i = 0; i < script.size(); i++) {
        if (script[i].edit == line_edit_t::keep)
            continue;
        const size_t first = i > context ? i - context : 0;
        const size_t end = context < script.size() - i - 1 ? i + context + 1 : script.size();
        if (!hunks.empty() && first <= hunks.back().end)
            hunks.back().end = end;
        else
            hunks.push_back({first, end});
    }
    return hunks;
}

class writer_t {
  public:
    writer_t(const lines_t &before_lines, const lines_t &after_lines, const script_t &all,
             const unified_t &how)
        : before(before_lines), after(after_lines), script(all), format(how) {}

    std::string write() {
        const auto hunks = hunks_of(script, format.context);
        if (hunks.empty())
            return "";
        line("", bold, "--- " + format.before_label + '\n');
        line("", bold, "+++ " + format.after_label + '\n');
        for (const hunk_t &hunk : hunks)
            write_hunk(hunk);
        return std::move(text);
    }

  private:
    // "12,3": the first line, counted from 1, and the number of lines. Of no lines, the line in
    // front of them.
    static std::string range(size_t first, size_t count) {
        const std::string start = std::to_string(count == 0 ? first : first + 1);
        return count == 1 ? start : start + ',' + std::to_string(count);
    }

    void write_hunk(const hunk_t &hunk) {
        size_t before_count = 0, after_count = 0;
        for (size_t i = hunk.first; i < hunk.end; i++) {
            before_count += script[i].edit != line_edit_t::add;
            after_count += script[i].edit != line_edit_t::remove;
        }
        const script_line_t &first = script[hunk.first];
        line("", cyan,
             "@@ -" + range(first.before, before_count) + " +" + range(first.after, after_count) +
                 " @@\n");
        if (format.words)
            return write_words(hunk);
        for (size_t i = hunk.first; i < hunk.end; i++)
            write_script_line(script[i]);
    }

    void write_words(const hunk_t &hunk) {
        for (size_t i = hunk.first; i < hunk.end;) {
            lines_t removed, added;
            for (; i < hunk.end && script[i].edit == line_edit_t::remove; i++)
                removed.push_back(before[script[i].before]);
            for (; i < hunk.end && script[i].edit == line_edit_t::add; i++)
                added.push_back(after[script[i].after]);
            text += word_diff(removed, added, {format.color, format.visible});
            for (; i < hunk.end && script[i].edit == line_edit_t::keep; i++)
                line("", plain, before[script[i].before]);
        }
    }

    void write_script_line(const script_line_t &l) {
        switch (l.edit) {
        case line_edit_t::keep:
            return line("", plain, ' ' + std::string(before[l.before]));
        case line_edit_t::remove:
            return line(annotation(l), red, '-' + std::string(before[l.before]));
        case line_edit_t::add:
            return line(annotation(l), green, '+' + std::string(after[l.after]));
        }
    }

    std::string annotation(const script_line_t &l) const {
        return format.margin > 0 ? format.annotation(l) : "";
    }

    // Writes one line of the configuration behind its margin, colours up to its newline.
    void line(const std::string &margin, const char *color, std::string_view content) {
        const bool complete = content.ends_with('\n');
        if (complete)
            content.remove_suffix(1);
        if (format.margin > 0)
            text += column(margin.substr(0, format.margin), format.margin + 1);
        const bool colored = format.color && *color;
        text += colored ? color : "";
        text += format.visible ? visible(content) : content;
        text += colored ? reset : "";
        text += complete ? "\n" : "\n\\ No newline at end of file\n";
    }

    const lines_t &before, &after;
    const script_t &script;
    const unified_t &format;
    std::string text;
};

} // namespace

std::string unified_diff(const lines_t &before, const lines_t &after, const script_t &script,
                         const unified_t &format) {
    return writer_t(before, after, script, format).write();
}

} // namespace infraconvert
