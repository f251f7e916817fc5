// the line "  neighbor 192.0.2.8 password 3 a1b2" stands where a class is expected
//     becomes
// the line "  neighbor 192.0.2.8 <masked>" stands where a class is expected

#include "secrets/mask.h"

#include "base/lines.h"
#include "secrets/masked_text.h"
#include "secrets/own_words.h"
#include "secrets/word_shapes.h"
#include "secrets/words.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace infraconvert {

namespace {

constexpr std::string_view in_front = "\"'(<[-=>:", behind = "\"')>],.;:!?";

// The word without what messages put around it.
std::string_view core_of(std::string_view word) {
    word.remove_prefix(std::min(word.find_first_not_of(in_front), word.size()));
    while (!word.empty() && behind.find(word.back()) != behind.npos) {
        const bool closes = word.back() == ')' && word.find('(') != word.npos; // 4.1(3)
        if (closes)
            break;
        word.remove_suffix(1);
    }
    return word;
}

bool is_own_word(std::string_view word) {
    static const std::set<std::string_view> known = [] {
        const words_t all = words_of(own_words);
        return std::set<std::string_view>(all.begin(), all.end());
    }();
    std::string small(word);
    for (char &c : small)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return known.contains(small);
}

bool only(std::string_view word, std::string_view characters) {
    return !word.empty() && word.find_first_not_of(characters) == word.npos;
}

// Too small to be a secret.
bool is_tiny_number(std::string_view word) { return word.size() <= 2 && is_number(word); }

// Values of a few bytes, functions of the converters, how often something stands there (x3), times.
bool is_small_value(std::string_view word) {
    constexpr std::string_view identifier = "abcdefghijklmnopqrstuvwxyz0123456789_K";
    constexpr size_t longest_number = 5, longest_hex = 6; // 0x1d9
    if (word.starts_with("0x") && word.size() <= longest_hex)
        return only(word.substr(2), "0123456789abcdef");
    if (word.ends_with("()"))
        return only(word.substr(0, word.size() - 2), identifier);
    if (word.starts_with("x"))
        word.remove_prefix(1);
    return (is_number(word) && word.size() <= longest_number) || is_number_list(word) ||
           is_release_number(word) || is_interface(word) ||
           (word.size() == 8 && only(word, "0123456789:"));
}

size_t offset_of(std::string_view text, std::string_view part) {
    return static_cast<size_t>(part.data() - text.data());
}

// True for a number that tells where in the configuration something stands, or how long it is.
bool counts_bytes(std::string_view before, std::string_view number) {
    constexpr std::string_view announcements[] = {
        "byte", "bytes",         "length",           "size", "at", "entry", "mode", "enable",
        "npiv", "port-security", "fc-port-security", "of",   "out"};
    constexpr std::string_view hex_digits = "0123456789abcdefABCDEFx";
    return only(number, hex_digits) && std::isdigit(static_cast<unsigned char>(number[0])) &&
           std::find(std::begin(announcements), std::end(announcements), before) !=
               std::end(announcements);
}

// Adds the mark; one is enough for several that follow one another in a list.
void add_mark(std::string &text) {
    const std::string listed = std::string(masked_mark) + ", ";
    if (text.ends_with(listed))
        text.resize(text.size() - 2);
    else
        text += masked_mark;
}

// Pieces of the text, from `start` on, that may be a line of a configuration.
std::vector<std::string_view> lines_from(std::string_view text, size_t start) {
    const std::string_view rest = text.substr(start);
    std::vector<std::string_view> lines;
    for (const size_t end :
         {rest.size(), rest.rfind('"'), rest.find('"'), rest.rfind('>'), rest.find(", ")}) {
        if (end != rest.npos && end > 0)
            lines.push_back(without_blanks(rest.substr(0, end)));
    }
    return lines;
}

} // namespace

std::string mask_t::learn(std::string_view configuration) {
    return masked_text(
        configuration,
        [this](std::string_view line, std::span<const std::string_view> words, size_t count) {
            for (size_t i = 0; i < words.size(); i++)
                (i < count ? shown : hidden).emplace(words[i]);
            learn_line(without_blanks(line), words, count);
        });
}

// Converters log whole lines, and one of them what follows "vlan" in any line.
void mask_t::learn_line(std::string_view line, std::span<const std::string_view> words,
                        size_t count) {
    constexpr size_t longest_of_interest = 4096;
    if (count == words.size())
        return;
    for (size_t i = 0; i < words.size(); i++) {
        const std::string_view rest = line.substr(offset_of(line, words[i]));
        const bool logged =
            i == 0 || (words[i].ends_with("vlan") && line.size() <= longest_of_interest);
        if (logged && i + 1 < words.size())
            lines.emplace(rest, i < count ? offset_of(rest, words[count]) : 0);
    }
}

// How much of the text at `start` is a line of a configuration whose rest is masked, and how much
// of it shows.
mask_t::masked_line_t mask_t::line_at(std::string_view text, size_t start) const {
    for (const std::string_view line : lines_from(text, start)) {
        if (const auto found = lines.find(line); found != lines.end())
            return {line.size(), found->second};
    }
    return {};
}

bool mask_t::shows(std::string_view word) const {
    const std::string_view core = core_of(word);
    if (shown.contains(word) || shown.contains(core) || is_own_word(core) || is_tiny_number(core))
        return true;
    return !hidden.contains(word) && !hidden.contains(core) &&
           (core.empty() || is_small_value(core));
}

// One text on its way to what is told of it.
class mask_t::teller_t {
  public:
    teller_t(const mask_t &m, std::string_view t, kind_t k) : mask(m), text(t), kind(k) {}

    std::string told() {
        size_t number = 0;
        for (const std::string_view word : words_of(text)) {
            if (offset_of(text, word) >= done)
                tell(word, number++);
            before = core_of(word);
        }
        return result.append(text.substr(done));
    }

  private:
    void tell(std::string_view word, size_t number) {
        const size_t start = offset_of(text, word);
        const std::string_view core = core_of(word);
        if (hide_line(start, number) || (!core.empty() && hide_line(offset_of(text, core), number)))
            return;
        if (kind == kind_t::log && counts_bytes(before, core))
            hide(start, start + word.size());
        else if (!mask.shows(word))
            hide_from(start + word.starts_with('"'));
    }

    // Hides what does not show of a line of a configuration, if one starts here.
    bool hide_line(size_t start, size_t number) {
        constexpr size_t words_in_front = 8;
        if (number >= words_in_front && text[start] != '"' &&
            (start == 0 || text[start - 1] != '"'))
            return false;
        const masked_line_t line = mask.line_at(text, start);
        if (line.size > 0)
            hide(start + line.visible, start + line.size);
        return line.size > 0;
    }

    void hide_from(size_t start) { hide(start, end_of_secret(start)); }

    void hide(size_t start, size_t end) {
        result += text.substr(done, start - done);
        add_mark(result);
        done = end;
    }

    // Where a secret ends that begins at `start`.
    size_t end_of_secret(size_t start) {
        for (; counted < start; counted++)
            quoted ^= text[counted] == '"';
        if (quoted && last_quote != text.npos && last_quote > start)
            return last_quote;
        return kind == kind_t::message && !quoted ? std::min(text.find(", ", start), text.size())
                                                  : text.size();
    }

    const mask_t &mask;
    const std::string_view text;
    const kind_t kind;
    const size_t last_quote = text.rfind('"');
    std::string result;
    std::string_view before; // the word in front
    size_t done = 0;
    size_t counted = 0;  // quotes are counted up to here
    bool quoted = false; // that is between quotes
};

const masked_texts_t::text_t &masked_texts_t::masked(const text_t &text) {
    text_t &result = texts[text];
    if (!result)
        result = std::make_shared<const std::string>(known.learn(*text));
    return result;
}

std::string mask_t::message(std::string_view text) const {
    return teller_t(*this, text, kind_t::message).told();
}

std::string mask_t::logs(std::string_view text) const {
    std::string result;
    for (const std::string_view line : split_lines(text)) {
        const bool whole = line.ends_with('\n');
        const std::string_view bare = whole ? line.substr(0, line.size() - 1) : line;
        result += teller_t(*this, bare, kind_t::log).told();
        result += whole ? "\n" : "";
    }
    return result;
}

} // namespace infraconvert
