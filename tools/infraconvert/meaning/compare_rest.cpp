// Everything beyond QoS: features, VLANs, and the lines of which the model knows no more than where
// they stand.

#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

// ---- features

namespace {

bool is_read(const side_t &side, uint32_t line) {
    return std::none_of(side.problems.begin(), side.problems.end(), [&](const problem_t &problem) {
        return problem.fault == fault_t::spelling &&
               std::find(problem.lines.begin(), problem.lines.end(), line) != problem.lines.end();
    });
}

// True when the release reads a line that switches the feature on. In a spelling of another release
// it says nothing: the feature is off.
bool is_really_on(const side_t &side, const feature_t &feature) {
    if (!feature.on)
        return false;
    if (is_read(side, feature.line))
        return true;
    return std::any_of(
        side.model.spelled.begin(), side.model.spelled.end(), [&](const spelled_t &spelled) {
            const bool same = spelled.command ==
                              (feature.name == "npiv" ? spelled_t::npiv : spelled_t::fc_feature);
            return same && !spelled.text.starts_with("no ") && is_read(side, spelled.line);
        });
}

} // namespace

void compare_features(comparison_t &comparison) {
    const auto find = [](const model_t &model, const std::string &name) -> const feature_t * {
        for (const feature_t &feature : model.features) {
            if (feature.name == name)
                return &feature;
        }
        return nullptr;
    };
    const auto state = [](const feature_t *feature) {
        return !feature ? "not named" : feature->on ? "on" : "off";
    };
    std::set<std::string> names;
    for (const model_t *model : {&comparison.before.model, &comparison.after.model}) {
        for (const feature_t &feature : model->features)
            names.insert(feature.name);
    }
    for (const std::string &name : names) {
        const feature_t *old = find(comparison.before.model, name);
        const feature_t *now = find(comparison.after.model, name);
        if (old && now && old->on == now->on) {
            if (!is_really_on(comparison.before, *old) && is_really_on(comparison.after, *now))
                comparison.add("IC048", weight_t::error,
                               "feature " + name + " was not read and comes on", {old->line},
                               {now->line});
            continue;
        }
        comparison.add("IC048", weight_t::error,
                       "feature " + name + " was " + state(old) + " and is " + state(now),
                       {old ? old->line : 0}, {now ? now->line : 0});
    }
}

// ---- VLANs

namespace {

vlans_t vlans_of(const model_t &model, bool with_fcoe) {
    vlans_t all;
    for (const vlan_stanza_t &stanza : model.vlans) {
        if (!with_fcoe || !stanza.fcoe.empty())
            all |= stanza.vlans;
    }
    return all;
}

// "10-12,20"
std::string list_of(const vlans_t &vlans) {
    std::string text;
    for (size_t first = 0; first < vlans.size(); first++) {
        if (!vlans[first])
            continue;
        size_t last = first;
        while (last + 1 < vlans.size() && vlans[last + 1])
            last++;
        text += (text.empty() ? "" : ",") + std::to_string(first);
        if (last > first)
            text += '-' + std::to_string(last);
        first = last;
    }
    return text;
}

lines_t lines_with(const model_t &model, const vlans_t &vlans, bool with_fcoe) {
    lines_t lines;
    for (const vlan_stanza_t &stanza : model.vlans) {
        if ((stanza.vlans & vlans).none() || (with_fcoe && stanza.fcoe.empty()))
            continue;
        lines.push_back(stanza.line);
        if (with_fcoe)
            lines.push_back(stanza.fcoe.front());
    }
    return lines;
}

void tell_vlans(comparison_t &comparison, const char *code, bool with_fcoe) {
    const model_t &before = comparison.before.model, &after = comparison.after.model;
    const vlans_t old = vlans_of(before, with_fcoe), now = vlans_of(after, with_fcoe);
    const vlans_t lost = old & ~now, gained = now & ~old;
    const std::string what = with_fcoe ? " with fcoe" : "";
    if (lost.any())
        comparison.add(code, weight_t::error, "VLAN " + list_of(lost) + what + " is gone",
                       lines_with(before, lost, with_fcoe), lines_with(after, lost, false));
    if (gained.any())
        comparison.add(code, weight_t::error, "VLAN " + list_of(gained) + what + " is new",
                       lines_with(before, gained, false), lines_with(after, gained, with_fcoe));
}

struct vlan_lines_t {
    std::vector<std::string_view> texts;
    lines_t lines;
};

// The other lines of each VLAN, in their order.
std::map<size_t, vlan_lines_t> lines_by_vlan(const model_t &model) {
    std::map<size_t, vlan_lines_t> all;
    for (const vlan_stanza_t &stanza : model.vlans) {
        if (stanza.other.empty())
            continue;
        for (size_t vlan = 0; vlan < vlan_numbers; vlan++) {
            if (!stanza.vlans[vlan])
                continue;
            for (const line_t &line : stanza.other) {
                all[vlan].texts.push_back(line.text);
                all[vlan].lines.push_back(line.number);
            }
        }
    }
    return all;
}

// True when the other lines stand in the same stanzas, so that nothing need be looked at closely.
bool same_stanzas(const model_t &before, const model_t &after) {
    const auto with_lines = [](const model_t &model) {
        std::vector<const vlan_stanza_t *> stanzas;
        for (const vlan_stanza_t &stanza : model.vlans) {
            if (!stanza.other.empty())
                stanzas.push_back(&stanza);
        }
        return stanzas;
    };
    const auto old = with_lines(before), now = with_lines(after);
    return std::equal(
        old.begin(), old.end(), now.begin(), now.end(), [](const auto *a, const auto *b) {
            return a->vlans == b->vlans &&
                   std::equal(a->other.begin(), a->other.end(), b->other.begin(), b->other.end(),
                              [](const line_t &x, const line_t &y) { return x.text == y.text; });
        });
}

void compare_vlan_lines(comparison_t &comparison) {
    const model_t &before = comparison.before.model, &after = comparison.after.model;
    if (same_stanzas(before, after))
        return;
    const auto old = lines_by_vlan(before), now = lines_by_vlan(after);
    vlans_t changed;
    lines_t old_lines, lines;
    for (size_t vlan = 0; vlan < vlan_numbers; vlan++) {
        const auto was = old.find(vlan), is = now.find(vlan);
        const bool had = was != old.end(), has = is != now.end();
        if (had == has && (!had || was->second.texts == is->second.texts))
            continue;
        changed.set(vlan);
        if (had)
            old_lines.insert(old_lines.end(), was->second.lines.begin(), was->second.lines.end());
        if (has)
            lines.insert(lines.end(), is->second.lines.begin(), is->second.lines.end());
    }
    if (changed.any())
        comparison.add("IC001", weight_t::error, "lines of VLAN " + list_of(changed) + " changed",
                       old_lines, lines);
}

} // namespace

void compare_vlans(comparison_t &comparison) {
    tell_vlans(comparison, "IC056", false);
    tell_vlans(comparison, "IC067", true);
    compare_vlan_lines(comparison);
}

// ---- other lines

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

std::vector<std::pair<size_t, size_t>> common(const std::vector<line_t> &old,
                                              const std::vector<line_t> &now) {
    // A longest common subsequence behind the common start; blocks that changed are short.
    const auto same = [](const line_t &a, const line_t &b) {
        return a.text == b.text && (a.indent > 0) == (b.indent > 0);
    };
    std::vector<std::pair<size_t, size_t>> pairs;
    size_t start = 0;
    while (start < old.size() && start < now.size() && same(old[start], now[start]))
        pairs.emplace_back(start, start), start++;
    const size_t rows = old.size() - start, columns = now.size() - start;
    std::vector<std::vector<uint32_t>> length(rows + 1, std::vector<uint32_t>(columns + 1));
    for (size_t i = rows; i-- > 0;) {
        for (size_t j = columns; j-- > 0;)
            length[i][j] = same(old[start + i], now[start + j])
                               ? length[i + 1][j + 1] + 1
                               : std::max(length[i + 1][j], length[i][j + 1]);
    }
    for (size_t i = 0, j = 0; i < rows && j < columns;) {
        if (same(old[start + i], now[start + j]))
            pairs.emplace_back(start + i++, start + j++);
        else if (length[i + 1][j] >= length[i][j + 1])
            i++;
        else
            j++;
    }
    return pairs;
}

class blocks_t {
  public:
    explicit blocks_t(comparison_t &compared) : comparison(compared) {}

    void run() {
        const auto &old = comparison.before.model.blocks, &now = comparison.after.model.blocks;
        const block_t none;
        for (const auto &[key, block] : old) {
            const auto same = now.find(key);
            compare(key, block, same == now.end() ? none : same->second);
        }
        for (const auto &[key, block] : now) {
            if (!old.contains(key))
                compare(key, none, block);
        }
        tell_respelled();
        tell_rest();
        if (!deeper_before.empty())
            comparison.add("IC005", weight_t::warning, "the depth of indentation changed",
                           deeper_before, deeper_after);
    }

  private:
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
    void compare_fabric(const std::string &key, std::vector<line_t> old, std::vector<line_t> now) {
        const auto by_words = [](const line_t &a, const line_t &b) {
            return joined(split_words(a.text)) < joined(split_words(b.text));
        };
        std::sort(old.begin(), old.end(), by_words);
        std::sort(now.begin(), now.end(), by_words);
        std::set_difference(old.begin(), old.end(), now.begin(), now.end(),
                            stray_adder_t{key, gone}, by_words);
        std::set_difference(now.begin(), now.end(), old.begin(), old.end(),
                            stray_adder_t{key, added}, by_words);
    }

    // An output iterator that makes lines strays.
    struct stray_adder_t {
        using iterator_category = std::output_iterator_tag;
        using value_type = void;
        using difference_type = ptrdiff_t;
        using pointer = void;
        using reference = void;

        const std::string &key;
        strays_t &to;
        stray_adder_t &operator*() { return *this; }
        stray_adder_t &operator++() { return *this; }
        stray_adder_t &operator++(int) { return *this; }
        stray_adder_t &operator=(const line_t &line) {
            to.push_back({key, line});
            return *this;
        }
    };

    // ---- texts in which a keyword was rewritten

    stray_t *respelled(const stray_t &old) {
        const std::string text = one_spelling(old.line.text);
        for (stray_t &now : added) {
            const bool same_stanza =
                now.stanza == old.stanza || (old.line.indent == 0 && now.line.indent == 0);
            if (!now.told && same_stanza && one_spelling(now.line.text) == text)
                return &now;
        }
        return nullptr;
    }

    void tell_respelled() {
        struct pair_t {
            lines_t before, after;
        };
        std::map<std::pair<std::string, std::string>, pair_t> commands;
        pair_t remarks;
        for (stray_t &old : gone) {
            if (one_spelling(old.line.text) == old.line.text &&
                old.line.text.find("feature ") == std::string_view::npos &&
                old.line.text.find("port-security") == std::string_view::npos)
                continue;
            stray_t *now = respelled(old);
            if (!now)
                continue;
            old.told = now->told = true;
            pair_t &pair =
                is_remark(old.line.text)
                    ? remarks
                    : commands[{std::string(old.line.text), std::string(now->line.text)}];
            pair.before.push_back(old.line.number);
            pair.after.push_back(now->line.number);
        }
        if (!remarks.before.empty())
            comparison.add("IC004", weight_t::warning,
                           "a keyword in a description or banner was rewritten", remarks.before,
                           remarks.after);
        for (const auto &[texts, lines] : commands)
            comparison.add("IC001", weight_t::error,
                           "\"" + texts.first + "\" is \"" + texts.second + '"', lines.before,
                           lines.after);
    }

    // ---- lines that are gone or new, by their stanzas

    static std::string under(const std::string &stanza) {
        return stanza.empty() ? "ahead of the first stanza" : "under \"" + stanza + '"';
    }

    // The stanza under which the line stood, if it does not stand there any more.
    std::string former_stanza(const stray_t &stray) const {
        for (const stanza_t &old : comparison.before.model.reading.stanzas) {
            for (const line_t &line : old.body) {
                if (line.text == stray.line.text && old.header.text != stray.stanza &&
                    !stands_under(old.header.text, line.text))
                    return std::string(old.header.text);
            }
        }
        return "";
    }

    bool stands_under(std::string_view header, std::string_view text) const {
        for (const stanza_t &now : comparison.after.model.reading.stanzas) {
            for (const line_t &line : now.body) {
                if (now.header.text == header && line.text == text)
                    return true;
            }
        }
        return false;
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
            const char *code = lost ? "IC001" : lines.from.empty() ? "IC002" : "IC003";
            comparison.add(
                code, weight_t::error,
                what + under(stanza) +
                    (lost || lines.from.empty() ? "" : ", which stood " + under(lines.from)),
                lines.before, lines.after);
        }
    }

    comparison_t &comparison;
    strays_t gone, added;
    lines_t deeper_before, deeper_after;
};

} // namespace

void compare_blocks(comparison_t &comparison) { blocks_t(comparison).run(); }

} // namespace infraconvert::meaning
