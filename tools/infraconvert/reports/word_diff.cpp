// Words are compared as lines are elsewhere, and the end of a line is a word of its own, so that
// lines stay lines. The space in front of a word is no part of the comparison.

#include "reports/word_diff.h"

#include "base/diff.h"
#include "base/quoting.h"

namespace infraconvert {

namespace {

constexpr std::string_view end_of_line = "\n", space = " \t";

// A comparison of more would take noticeable time, and nobody reads it word by word.
constexpr size_t most_words = 5000;

struct words_t {
    lines_t words;
    lines_t gaps; // what stands in front of each
};

words_t words_of(const lines_t &lines) {
    words_t words;
    for (std::string_view line : lines) {
        line = without_newline(line);
        for (size_t at = 0; at < line.size();) {
            const size_t start = line.find_first_not_of(space, at);
            if (start == line.npos)
                break;
            const size_t end = std::min(line.find_first_of(space, start), line.size());
            words.gaps.push_back(line.substr(at, start - at));
            words.words.push_back(line.substr(start, end - start));
            at = end;
        }
        words.gaps.emplace_back();
        words.words.push_back(end_of_line);
    }
    return words;
}

struct brackets_t {
    const char *color, *open, *close;
};

constexpr brackets_t brackets_of(line_edit_t edit) {
    switch (edit) {
    case line_edit_t::remove:
        return {"\033[31m", "[-", "-]"};
    case line_edit_t::add:
        return {"\033[32m", "{+", "+}"};
    case line_edit_t::keep:
        break;
    }
    return {"", "", ""};
}

// Words one after the other, in brackets as long as the same happens to them.
class word_writer_t {
  public:
    explicit word_writer_t(const word_diff_t &how) : format(how) {}

    void word(line_edit_t edit, std::string_view gap, std::string_view word) {
        const bool ends_line = word == end_of_line;
        if (edit != open || ends_line)
            become(line_edit_t::keep);
        text += gap;
        become(ends_line ? line_edit_t::keep : edit);
        text += format.visible && !ends_line ? visible(word) : std::string(word);
    }

    std::string written() {
        become(line_edit_t::keep);
        return std::move(text);
    }

  private:
    void become(line_edit_t edit) {
        if (edit == open)
            return;
        const brackets_t last = brackets_of(open), next = brackets_of(edit);
        text += last.close;
        text += format.color && *last.color ? "\033[0m" : "";
        text += format.color ? next.color : "";
        text += next.open;
        open = edit;
    }

    const word_diff_t &format;
    line_edit_t open = line_edit_t::keep;
    std::string text;
};

} // namespace

std::string word_diff(const lines_t &removed, const lines_t &added, const word_diff_t &format) {
    const words_t before = words_of(removed), after = words_of(added);
    std::vector<match_t> common;
    if (before.words.size() + after.words.size() <= most_words)
        common = common_lines(before.words, after.words);
    word_writer_t writer(format);
    for (const auto &[edit, b, a, step] :
         script_of(before.words.size(), after.words.size(), common)) {
        if (edit == line_edit_t::remove)
            writer.word(edit, before.gaps[b], before.words[b]);
        else
            writer.word(edit, after.gaps[a], after.words[a]);
    }
    return writer.written();
}

} // namespace infraconvert
