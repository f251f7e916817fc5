// Lines that no rule should touch, proven identical: the lines of both texts, without those that a
// rule may rewrite and with the keywords that a rule replaces brought to one spelling, must be the
// same, in the same order and under the same stanzas.

#include "audit/checks.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace infraconvert {

namespace {

void replace_all(std::string &text, std::string_view what, std::string_view with) {
    for (size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size())
        text.replace(at, what.size(), with);
}

// What the rules that ran may do to a line.
struct rules_t {
    explicit rules_t(const audit_t &audit)
        : qos(audit.ran("qos")), fcportsec(audit.ran("fcportsec")), npiv(audit.ran("npiv")),
          fwm(audit.ran("fwm")), assoc(audit.ran("assoc")), satmgr(audit.ran("satmgr")) {}

    std::string one_spelling(std::string_view line) const {
        std::string text(line.substr(0, line.find_last_not_of('\n') + 1));
        if (npiv)
            replace_all(text, "npiv enable", "feature npiv");
        if (fcportsec) {
            replace_all(text, "fc-port-security", "port-security");
            replace_all(text, "port-security enable", "feature port-security");
        }
        if (fwm && text.starts_with("mac address-table"))
            text[3] = '-';
        return text;
    }

    // Other checks look at these lines.
    bool takes(const document_t &document, const stanza_t &stanza, size_t line) const {
        const words_t words = split_words(document.lines[line]);
        if (words.empty())
            return qos && is_map(document, stanza);
        const bool in_body = line > stanza.first;
        const bool in_interface = document.header(stanza).starts_with("interface ");
        if (qos && is_map(document, stanza) && !is_remark(document.lines[line]))
            return true;
        if (qos && in_body && words[0] == "service-policy")
            return true;
        if (assoc && is_vlan_list(document.header(stanza)) &&
            (is_fcoe_stanza(document, stanza) ||
             (in_body && words.size() == 1 && words[0] == "fcoe")))
            return true;
        return satmgr && in_body && in_interface && is_fabric_line(words);
    }

    // True when a rule looks for something that the line has.
    bool mentions(std::string_view line) const {
        const auto has = [&](std::string_view text) { return line.find(text) != line.npos; };
        return (npiv && (has("npiv enable") || has("feature npiv"))) ||
               (fcportsec && has("port-security")) ||
               (fwm && (has("mac address-table") || has("mac-address-table")));
    }

    static bool is_remark(std::string_view line) { return line[0] == '!' || line[0] == '#'; }

    static bool is_map(const document_t &document, const stanza_t &stanza) {
        const std::string_view header = document.header(stanza);
        return header.starts_with("class-map ") || header.starts_with("policy-map ");
    }

    // As the conversion of VLANs writes them, with two blanks behind the word.
    static bool is_fcoe_stanza(const document_t &document, const stanza_t &stanza) {
        if (!document.lines[stanza.first].starts_with("vlan  "))
            return false;
        for (size_t i = stanza.first + 1; i < stanza.end; i++) {
            if (trimmed(document.lines[i]) != "fcoe")
                return false;
        }
        return stanza.end > stanza.first + 1;
    }

    static bool is_fabric_line(const words_t &words) {
        return (words.size() > 1 && words[0] == "fex" && words[1] == "associate") ||
               (words.size() > 2 && words[0] == "switchport" && words[1] == "mode" &&
                words[2] == "fex-fabric");
    }

    bool qos, fcportsec, npiv, fwm, assoc, satmgr;
};

// The lines to compare, each with its number and the header of its stanza.
struct outside_t {
    outside_t(const document_t &document, const rules_t &rules) {
        for (const stanza_t &stanza : document.stanzas) {
            const std::string owner =
                rules.is_map(document, stanza) ? "" : rules.one_spelling(document.header(stanza));
            for (size_t i = stanza.first; i < stanza.end; i++) {
                if (rules.takes(document, stanza, i))
                    continue;
                texts.push_back(rules.one_spelling(document.lines[i]));
                numbers.push_back(i);
                owners.push_back(owner);
            }
        }
    }

    lines_t lines() const { return {texts.begin(), texts.end()}; }

    std::vector<std::string> texts, owners;
    std::vector<size_t> numbers;
};

// Texts of all lines with the stanzas under which they stand.
using places_t = std::set<std::pair<std::string_view, std::string_view>>;

places_t places_of(const document_t &document) {
    places_t places;
    for (const stanza_t &stanza : document.stanzas) {
        for (size_t i = stanza.first; i < stanza.end; i++)
            places.insert({trimmed(document.lines[i]), document.header(stanza)});
    }
    return places;
}

class comparison_t {
  public:
    explicit comparison_t(audit_t &a)
        : audit(a), rules(a), before(a.before, rules), after(a.after, rules),
          places(places_of(a.before)) {}

    void run() {
        const auto matches = common_lines(before.lines(), after.lines());
        std::vector<size_t> removed, added;
        for (const script_line_t &line :
             script_of(before.texts.size(), after.texts.size(), matches)) {
            if (line.edit == line_edit_t::remove) {
                removed.push_back(line.before);
            } else if (line.edit == line_edit_t::add) {
                added.push_back(line.after);
            } else {
                tell_change(removed, added);
                compare(line.before, line.after);
            }
        }
        tell_change(removed, added);
    }

  private:
    // The same line in both texts.
    void compare(size_t b, size_t a) {
        if (before.owners[b] != after.owners[a])
            audit.add("IC003",
                      "was under \"" + before.owners[b] + "\", is under \"" + after.owners[a] + '"',
                      {before.numbers[b]}, {after.numbers[a]});
        const size_t was = before.numbers[b], is = after.numbers[a];
        const std::string_view old_line = audit.before.lines[was], new_line = audit.after.lines[is];
        if (trimmed(old_line) == trimmed(new_line) || is_command(old_line))
            return;
        audit.add("IC004", "", {was}, {is});
    }

    // True when the line is a command of a feature whose keyword the rules replace.
    static bool is_command(std::string_view line) {
        constexpr std::string_view commands[] = {"npiv enable",
                                                 "feature npiv",
                                                 "port-security",
                                                 "feature port-security",
                                                 "feature fc-port-security",
                                                 "fc-port-security",
                                                 "mac address-table",
                                                 "no port-security",
                                                 "no fc-port-security"};
        return std::any_of(std::begin(commands), std::end(commands),
                           [&](std::string_view command) { return line.starts_with(command); });
    }

    void tell_change(std::vector<size_t> &removed, std::vector<size_t> &added) {
        size_t i = 0;
        for (; i < std::min(removed.size(), added.size()); i++)
            audit.add("IC001", "changed", {before.numbers[removed[i]]}, {after.numbers[added[i]]});
        for (size_t r = i; r < removed.size(); r++)
            audit.add("IC001", "missing", {before.numbers[removed[r]]}, {});
        for (size_t a = i; a < added.size(); a++)
            tell_new_line(added[a]);
        removed.clear();
        added.clear();
    }

    void tell_new_line(size_t a) {
        const size_t number = after.numbers[a];
        const std::string_view line = trimmed(audit.after.lines[number]);
        const auto place = places.lower_bound({line, ""});
        if (place == places.end() || place->first != line || line.empty())
            return audit.add("IC002", "", {}, {number});
        audit.add("IC003", "stood under \"" + std::string(place->second) + '"', {}, {number});
    }

    audit_t &audit;
    const rules_t rules;
    const outside_t before, after;
    const places_t places;
};

} // namespace

void check_outside_lines(audit_t &audit) {
    if (audit.conversion.changes())
        comparison_t(audit).run();
}

void check_coverage(audit_t &audit) {
    const rules_t rules(audit);
    const auto taken = [&](const stanza_t &stanza) {
        for (size_t i = stanza.first; i < stanza.end; i++) {
            if (rules.takes(audit.before, stanza, i) || rules.mentions(audit.before.lines[i]))
                return true;
        }
        return false;
    };
    std::map<std::string, size_t> kinds; // first word of the stanza, and how many
    size_t stanzas = 0, lines = 0;
    for (const stanza_t &stanza : audit.before.stanzas) {
        if (taken(stanza))
            continue;
        const words_t words = split_words(audit.before.header(stanza));
        kinds[words.empty() ? "(no command)" : std::string(words[0])]++;
        stanzas++;
        lines += stanza.end - stanza.first;
    }
    if (stanzas == 0)
        return;
    std::string list;
    for (const auto &[word, count] : kinds)
        list += (list.empty() ? "" : ", ") + word + (count > 1 ? " x" + std::to_string(count) : "");
    audit.add("IC080",
              std::to_string(lines) + " of " + std::to_string(audit.before.lines.size()) +
                  " lines, in " + std::to_string(stanzas) + " stanzas: " + list,
              {}, {});
}

} // namespace infraconvert
