// Good results, changed in one place: the judgement finds every change that means something, and
// none that means nothing.

#include "infraconvert/meaning/configurations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>

namespace {

using namespace meaning_test;

constexpr size_t changes = 1000;

bool opens_stanza(const std::string &line) {
    return std::isalpha(static_cast<unsigned char>(line[0]));
}

bool begins(const std::string &line, std::initializer_list<const char *> starts) {
    const std::string text = line.substr(std::min(line.find_first_not_of(' '), line.size()));
    return std::any_of(starts.begin(), starts.end(),
                       [&](const char *start) { return text.starts_with(start); });
}

// "  class type queuing voice\n    " of "class-map type queuing voice\n": a class that acts.
std::string acting_class(const std::string &header) {
    const size_t type = header.find("type "), name = header.find_last_of(' ') + 1;
    const std::string words =
        type == header.npos ? "" : header.substr(type, header.find(' ', type + 5) + 1 - type);
    return "  class " + words + header.substr(name) + "    ";
}

// A text that can be changed where it says something. A class-map that no acting class has says
// nothing. A stanza that stands twice is one, so what one of the two says may stand in the other
// too: it is left alone.
class damaged_t {
  public:
    damaged_t(const std::string &text, chance_t &random) : lines(lines_of(text)), chance(random) {
        std::map<std::string, size_t> stanzas;
        for (const std::string &line : lines)
            stanzas[line] += opens_stanza(line);
        std::string header;
        for (size_t i = 0; i < lines.size(); i++) {
            header = opens_stanza(lines[i]) ? lines[i] : header;
            const bool acts =
                begins(header, {"policy-map", "system qos"}) ||
                (begins(header, {"class-map"}) && text.find(acting_class(header)) != text.npos);
            if (stanzas[header] < 2 && acts)
                places.push_back(i);
        }
    }

    // One change; false when there is no place for one of this kind.
    bool change(size_t kind) {
        switch (kind) {
        case 0: // drop
            return at({"match", "bandwidth", "priority", "mtu", "pause", "service-policy"}) &&
                   replace("");
        case 1: // renumber
            return at({"match cos", "bandwidth", "mtu"}) && renumber();
        case 2: // merge: what was said of this class is said of the one in front of it
            return at({"class "}) && acts() && replace("");
        case 3: // move out of the stanza
            return at({"match", "bandwidth", "priority", "mtu", "pause"}) && unindent();
        case 4: // swap with the line of another class
            return swap();
        case 5: // retype
            return at({"class-map type", "policy-map type", "service-policy type"}) && retype();
        case 6: // misspell
            return at({"match", "bandwidth", "priority", "mtu", "pause", "class ",
                       "service-policy"}) &&
                   misspell();
        default: // move to where another interface is
            return at({"service-policy"}) && move_to_port();
        }
    }

    std::string text() const { return joined(lines); }
    const std::string &words() const { return what; }

  private:
    // Chooses a line that begins so.
    bool at(std::initializer_list<const char *> starts) {
        std::vector<size_t> fitting;
        std::copy_if(places.begin(), places.end(), std::back_inserter(fitting),
                     [&](size_t each) { return begins(lines[each], starts); });
        if (fitting.empty())
            return false;
        place = fitting[chance.below(fitting.size())];
        what = lines[place];
        return true;
    }

    bool replace(const std::string &line) {
        what += "became\n" + line;
        lines[place] = line;
        return true;
    }

    // A class with actions, behind another one.
    bool acts() const {
        return begins(lines[place + 1], {"bandwidth", "priority", "mtu", "pause"}) &&
               !opens_stanza(lines[place - 1]);
    }

    bool renumber() {
        std::string line = lines[place];
        const size_t end = line.find_last_of("0123456789");
        line[end] = line[end] == '9' ? '8' : static_cast<char>(line[end] + 1);
        return replace(line);
    }

    bool unindent() { return replace(lines[place].substr(lines[place].find_first_not_of(' '))); }

    bool swap() {
        if (!at({"bandwidth", "priority", "mtu", "match cos"}))
            return false;
        const size_t first = place;
        if (!at({"bandwidth", "priority", "mtu", "match cos"}) || lines[first] == lines[place] ||
            begins(lines[first], {"match"}) != begins(lines[place], {"match"}) ||
            begins(lines[first], {"mtu"}) != begins(lines[place], {"mtu"}))
            return false;
        what += "and\n" + lines[first] + "swapped\n";
        std::swap(lines[first], lines[place]);
        return true;
    }

    bool retype() {
        std::string line = lines[place];
        const bool queuing = line.find("type queuing") != line.npos;
        const size_t from = line.find("type ") + 5, end = line.find(' ', from);
        return replace(line.replace(from, end - from, queuing ? "network-qos" : "queuing"));
    }

    bool misspell() {
        std::string line = lines[place];
        return replace(line.insert(line.find_first_not_of(' '), "x"));
    }

    bool move_to_port() {
        const std::string line = lines[place];
        lines[place].clear();
        lines.push_back("interface Ethernet1/40\n" + line);
        what += "moved\n";
        return true;
    }

    lines_t lines;
    chance_t &chance;
    std::vector<size_t> places; // lines that may be changed
    size_t place = 0;
    std::string what;
};

// Those that lose nothing. Where classes share a group their actions are those of the group, and
// may change places.
const std::vector<conversion_t> &good_conversions() {
    static const std::vector<conversion_t> kept = [] {
        std::vector<conversion_t> good = conversions(2, 80);
        std::erase_if(good, [](const conversion_t &each) {
            return errors_of(each) > 0 ||
                   each.before.find("video\n    set qos-group 2") != std::string::npos;
        });
        return good;
    }();
    return kept;
}

TEST(damage, of_good_results_is_found) {
    constexpr size_t kinds = 8;
    const auto &good = good_conversions();
    ASSERT_GT(good.size(), 40);
    chance_t chance(3);
    std::map<size_t, size_t> of_kind;
    for (size_t done = 0; done < changes;) {
        const conversion_t &conversion = good[chance.below(good.size())];
        damaged_t damaged(conversion.after, chance);
        const size_t kind = chance.below(kinds);
        if (!damaged.change(kind))
            continue;
        done++;
        of_kind[kind]++;
        EXPECT_GT(errors_of({conversion.before, damaged.text(), conversion.route}), 0)
            << conversion.words() << "became\n"
            << conversion.after << "in which\n"
            << damaged.words();
    }
    for (size_t kind = 0; kind < kinds; kind++)
        EXPECT_GT(of_kind[kind], 20) << kind;
}

// ---- changes that mean nothing

std::vector<lines_t> stanzas_of(const std::string &text) {
    std::vector<lines_t> stanzas(1);
    for (const std::string &line : lines_of(text)) {
        if (opens_stanza(line))
            stanzas.emplace_back();
        stanzas.back().push_back(line);
    }
    return stanzas;
}

std::string with_stanza_moved(const std::string &text, chance_t &chance) {
    std::vector<lines_t> stanzas = stanzas_of(text);
    const size_t from = 1 + chance.below(stanzas.size() - 1);
    const lines_t moved = stanzas[from];
    const bool again = std::any_of(stanzas.begin(), stanzas.end(), [&](const lines_t &stanza) {
        return &stanza != &stanzas[from] && !stanza.empty() && stanza[0] == moved[0];
    });
    if (again) // a later one has the last word
        return text;
    stanzas.erase(stanzas.begin() + static_cast<ptrdiff_t>(from));
    stanzas.insert(stanzas.begin() + 1 + static_cast<ptrdiff_t>(chance.below(stanzas.size())),
                   moved);
    std::string changed;
    for (const lines_t &stanza : stanzas)
        changed += joined(stanza);
    return changed;
}

std::string with_line(const std::string &text, const std::string &line, chance_t &chance) {
    lines_t lines = lines_of(text);
    lines.insert(lines.begin() + static_cast<ptrdiff_t>(chance.below(lines.size() + 1)), line);
    return joined(lines);
}

std::string with_blanks(const std::string &text, chance_t &chance) {
    lines_t lines = lines_of(text);
    std::string &line = lines[chance.below(lines.size())];
    const size_t gap = line.find(' ', line.find_first_not_of(' '));
    if (gap == line.npos || chance.one_in(2))
        line.insert(line.size() - 1, chance.one_in(2) ? "  " : "\t");
    else if (begins(line, {"class", "policy-map", "service-policy", "match", "set"}))
        line.insert(gap, " ");
    return joined(lines);
}

// Groups are means: all that are called 2 are called 6 everywhere.
std::string with_another_number(std::string text) {
    for (size_t at = 0; (at = text.find("qos-group 2\n", at)) != text.npos; at++)
        text.replace(at, 11, "qos-group 6");
    return text;
}

TEST(damage, that_means_nothing_passes) {
    const auto &good = good_conversions();
    chance_t chance(4);
    for (size_t done = 0; done < changes; done++) {
        const conversion_t &conversion = good[chance.below(good.size())];
        const std::string kinds[] = {
            with_stanza_moved(conversion.after, chance),
            with_line(conversion.after, chance.one_in(2) ? "! remark\n" : "  # remark\n", chance),
            with_line(conversion.after, "\n", chance), with_blanks(conversion.after, chance),
            with_another_number(conversion.after)};
        const std::string &changed = kinds[done % std::size(kinds)];
        EXPECT_EQ(errors_of({conversion.before, changed, conversion.route}), 0)
            << conversion.words() << "became\n"
            << changed;
    }
}

} // namespace
