// The lines of which the model knows no more than where they stand.

#include "base/diff.h"
#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

void replace_all(std::string &text, std::string_view what, std::string_view with) {
    for (size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size())
        text.replace(at, what.size(), with);
}

// The text with every word that releases spell differently in one spelling.
std::string one_spelling(std::string_view line) {
    std::string text(line);
    replace_all(text, "fc-port-security", "port-security");
    replace_all(text, "port-security enable", "feature port-security");
    replace_all(text, "npiv enable", "feature npiv");
    replace_all(text, "mac address-table", "mac-address-table");
    return text;
}

bool is_remark(std::string_view text) {
    return text.starts_with("description ") || text.starts_with("banner ");
}

// A line that stands in one of the texts only.
struct stray_t {
    std::string stanza; // its first line
    line_t line;
    bool told = false;
};
using strays_t = std::vector<stray_t>;

// The lines that two blocks have in common. A line that is indented is another one than the same
// text at the start of a line.
std::vector<match_t> common(const std::vector<line_t> &old, const std::vector<line_t> &now) {
    const auto same = [](const line_t &a, const line_t &b) {
        return a.text == b.text && (a.indent > 0) == (b.indent > 0);
    };
    std::vector<match_t> pairs;
    if (std::equal(old.begin(), old.end(), now.begin(), now.end(), same)) {
        pairs.reserve(old.size());
        for (uint32_t i = 0; i < old.size(); i++)
            pairs.push_back({i, i});
        return pairs;
    }
    const auto texts = [](const std::vector<line_t> &lines) {
        std::vector<std::string> marked;
        marked.reserve(lines.size());
        for (const line_t &line : lines)
            marked.push_back((line.indent > 0 ? " " : "") + std::string(line.text));
        return marked;
    };
    const auto before = texts(old), after = texts(now);
    return common_lines({before.begin(), before.end()}, {after.begin(), after.end()});
}

class blocks_t {
  public:
    explicit blocks_t(comparison_t &compared) : comparison(compared) {}

    void run() {
        const auto &old = comparison.before.model.blocks, &now = comparison.after.model.blocks;
        const block_t none;
        auto banners = new_banners();
        for (const auto &[key, block] : old) {
            const auto same = now.find(key);
            if (same != now.end())
                compare(key, block, same->second);
            else if (const auto banner = banners.extract(one_spelling(key)))
                compare_banners(key, block, *banner.mapped());
            else
                compare(key, block, none);
        }
        for (const auto &[key, block] : now) {
            if (!old.contains(key) && !respelled_banners.contains(&block))
                compare(key, none, block);
        }
        tell_respelled();
        tell_rest();
        if (!deeper_before.empty())
            comparison.add("IC005", "the depth of indentation changed", deeper_before,
                           deeper_after);
    }

  private:
    // Those of the result that the original does not have, in one spelling.
    std::map<std::string, const block_t *> new_banners() const {
        std::map<std::string, const block_t *> banners;
        for (const auto &[key, block] : comparison.after.model.blocks) {
            if (key.starts_with("banner ") && !comparison.before.model.blocks.contains(key))
                banners.try_emplace(one_spelling(key), &block);
        }
        return banners;
    }

    // The lines of a banner stay its lines when a word in its first line was rewritten.
    void compare_banners(const std::string &key, const block_t &old, const block_t &now) {
        gone.push_back({key, {old.header, old.headers.front(), 0}});
        added.push_back({key, {now.header, now.headers.front(), 0}});
        compare_lines(key, old.lines, now.lines);
        respelled_banners.insert(&now);
    }

    void compare(const std::string &key, const block_t &old, const block_t &now) {
        if (!old.headers.empty() && now.headers.empty())
            gone.push_back({key, {old.header, old.headers.front(), 0}});
        if (old.headers.empty() && !now.headers.empty())
            added.push_back({key, {now.header, now.headers.front(), 0}});
        compare_lines(key, old.lines, now.lines);
        compare_fabric(key, old.fabric, now.fabric);
    }

    void compare_lines(const std::string &key, const std::vector<line_t> &old,
                       const std::vector<line_t> &now) {
        size_t i = 0, j = 0;
        const auto skip = [&](size_t old_end, size_t end) {
            for (; i < old_end; i++)
                gone.push_back({key, old[i]});
            for (; j < end; j++)
                added.push_back({key, now[j]});
        };
        for (const auto &[a, b] : common(old, now)) {
            skip(a, b);
            if (old[i].indent != now[j].indent) {
                deeper_before.push_back(old[i].number);
                deeper_after.push_back(now[j].number);
            }
            i++, j++;
        }
        skip(old.size(), now.size());
    }

    // Their order does not matter here.
    void compare_fabric(const std::string &key, const std::vector<fabric_line_t> &old,
                        const std::vector<fabric_line_t> &now) {
        std::map<std::string_view, std::vector<const fabric_line_t *>> free;
        for (const fabric_line_t &line : now)
            free[line.text].push_back(&line);
        for (const fabric_line_t &line : old) {
            auto &same = free[line.text];
            if (same.empty())
                gone.push_back({key, {line.text, line.line, 1}});
            else
                same.pop_back();
        }
        for (const auto &[text, lines] : free) {
            for (const fabric_line_t *line : lines)
                added.push_back({key, {line->text, line->line, 1}});
        }
    }

    // ---- texts in which a keyword was rewritten

    // The new lines by their stanza, or by none for first lines, and by their text in one spelling.
    using respelled_t = std::unordered_map<std::string, std::vector<stray_t *>>;

    static std::string respelled_key(const stray_t &stray) {
        return place_key(stray.line.indent == 0 ? "" : stray.stanza, one_spelling(stray.line.text));
    }

    respelled_t new_by_spelling() {
        respelled_t respelled;
        for (auto now = added.rbegin(); now != added.rend(); ++now)
            respelled[respelled_key(*now)].push_back(&*now);
        return respelled;
    }

    // True for a line that holds a word which releases spell differently.
    static bool may_be_respelled(std::string_view text) {
        return one_spelling(text) != text || text.find("feature ") != text.npos ||
               text.find("port-security") != text.npos;
    }

    void tell_respelled() {
        struct pair_t {
            lines_t before, after;
        };
        std::map<std::pair<std::string, std::string>, pair_t> commands;
        pair_t remarks;
        respelled_t respelled = new_by_spelling();
        for (stray_t &old : gone) {
            if (!may_be_respelled(old.line.text))
                continue;
            const auto same = respelled.find(respelled_key(old));
            if (same == respelled.end() || same->second.empty())
                continue;
            stray_t *now = same->second.back();
            same->second.pop_back();
            old.told = now->told = true;
            pair_t &pair =
                is_remark(old.line.text)
                    ? remarks
                    : commands[{std::string(old.line.text), std::string(now->line.text)}];
            pair.before.push_back(old.line.number);
            pair.after.push_back(now->line.number);
        }
        if (!remarks.before.empty())
            comparison.add("IC004", "a keyword in a description or banner was rewritten",
                           remarks.before, remarks.after);
        for (const auto &[texts, lines] : commands)
            comparison.add("IC001", "\"" + texts.first + "\" is \"" + texts.second + '"',
                           lines.before, lines.after);
    }

    // ---- lines that are gone or new, by their stanzas

    static std::string under(const std::string &stanza) {
        return stanza.empty() ? "ahead of the first stanza" : "under \"" + stanza + '"';
    }

    // The stanza under which the line stood, if it does not stand there any more.
    std::string former_stanza(const stray_t &stray) {
        if (moved_lines.empty())
            find_moved_lines();
        const auto from = moved_lines.find(stray.line.text);
        for (const std::string_view stanza :
             from == moved_lines.end() ? std::vector<std::string_view>() : from->second) {
            if (stanza != stray.stanza)
                return std::string(stanza);
        }
        return "";
    }

    // The lines that do not stand any more under a stanza of the original.
    void find_moved_lines() {
        std::set<std::pair<std::string_view, std::string_view>> stay;
        for (const stanza_t &now : comparison.after.model.reading.stanzas) {
            for (const line_t &line : now.body)
                stay.insert({now.header.text, line.text});
        }
        moved_lines[""];
        for (const stanza_t &old : comparison.before.model.reading.stanzas) {
            for (const line_t &line : old.body) {
                if (!stay.contains({old.header.text, line.text}))
                    moved_lines[line.text].push_back(old.header.text);
            }
        }
    }

    void tell_rest() {
        struct lines_of_stanza_t {
            lines_t before, after;
            std::string from; // the stanza from which a line came
        };
        std::map<std::string, lines_of_stanza_t> stanzas;
        for (const stray_t &stray : gone) {
            if (!stray.told)
                stanzas[stray.stanza].before.push_back(stray.line.number);
        }
        for (const stray_t &stray : added) {
            if (stray.told)
                continue;
            lines_of_stanza_t &lines = stanzas[stray.stanza];
            lines.after.push_back(stray.line.number);
            if (lines.from.empty())
                lines.from = former_stanza(stray);
        }
        for (const auto &[stanza, lines] : stanzas) {
            const bool lost = !lines.before.empty(), gained = !lines.after.empty();
            const char *what = lost && gained ? "lines changed "
                               : lost         ? "lines are missing "
                                              : "lines are new ";
            const finding_code_t code = lost                 ? finding_code_t("IC001")
                                        : lines.from.empty() ? finding_code_t("IC002")
                                                             : "IC003";
            comparison.add(
                code,
                what + under(stanza) +
                    (lost || lines.from.empty() ? "" : ", which stood " + under(lines.from)),
                lines.before, lines.after);
        }
    }

    comparison_t &comparison;
    strays_t gone, added;
    std::set<const block_t *> respelled_banners;
    std::unordered_map<std::string_view, std::vector<std::string_view>> moved_lines;
    lines_t deeper_before, deeper_after;
};

} // namespace

void compare_blocks(comparison_t &comparison) { blocks_t(comparison).run(); }

} // namespace infraconvert::meaning
