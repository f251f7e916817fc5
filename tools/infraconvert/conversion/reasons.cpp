// A converter says why it fails in one line of its log, in a developer's words, and most often does
// not say where: but the lines in front of it tell which map or attachment it was looking at.

#include "conversion/reasons.h"

#include "base/errors.h"
#include "conversion/configuration.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace infraconvert {

namespace {

using captures_t = std::vector<std::string>;

// What the words of a pattern stand for in a line: "%s" for the text up to what follows it in the
// pattern. Nothing when the pattern does not stand in the line.
std::optional<captures_t> match(std::string_view line, std::string_view pattern) {
    captures_t captures;
    const size_t head = pattern.find("%s");
    size_t at = line.find(pattern.substr(0, head));
    if (at == line.npos)
        return {};
    at += pattern.substr(0, head).size();
    pattern.remove_prefix(std::min(head, pattern.size()));
    while (!pattern.empty()) {
        pattern.remove_prefix(2);
        const std::string_view literal = pattern.substr(0, pattern.find("%s"));
        const size_t end = literal.empty() ? line.size() : line.find(literal, at);
        if (end == line.npos)
            return {};
        captures.emplace_back(line.substr(at, end - at));
        at = end + literal.size();
        pattern.remove_prefix(literal.size());
    }
    return captures;
}

// A failure as the log tells it.
struct logged_failure_t {
    const lines_t &log; // up to the line that tells of the failure
    const configuration_t &configuration;
    captures_t captures; // of that line

    // What `pattern` captured when it last stood in the log; empty texts when it never did.
    captures_t last_captures(std::string_view pattern) const {
        for (auto line = log.rbegin(); line != log.rend(); ++line) {
            if (const auto found = match(without_newline(*line), pattern))
                return *found;
        }
        return {"", ""};
    }
    std::string last(std::string_view pattern) const { return last_captures(pattern)[0]; }
};

// The class-map or policy-map that the converter was reading.
struct map_name_t {
    std::string keyword, name;
};
map_name_t map_at_hand(const logged_failure_t &e) {
    const captures_t found = e.last_captures("found %s-map name %s");
    return {found[0] + "-map", found[1]};
}

using places_t = std::vector<size_t>;

// ---- Where it is in the configuration ----

places_t no_places(const logged_failure_t &) { return {}; }

places_t named_attachments(const logged_failure_t &e) {
    return e.configuration.lines_with({"service-policy", e.captures[0]});
}

places_t first_line_of_map(const logged_failure_t &e) {
    const map_name_t map = map_at_hand(e);
    return e.configuration.maps(map.keyword, map.name);
}

// The attachment under "system qos" and the policy-map that it names.
places_t system_policy(const logged_failure_t &e) {
    const std::string name = e.last("found service-policy name %s");
    places_t places = e.configuration.lines_in("system qos", {"service-policy", name});
    places.resize(std::min<size_t>(places.size(), 1));
    const places_t maps = e.configuration.maps("policy-map", name);
    places.insert(places.end(), maps.begin(), maps.end());
    return places;
}

places_t interface_attachment(const logged_failure_t &e) {
    return e.configuration.lines_in("interface",
                                    {"service-policy", e.last("is on an interface: dir %s"),
                                     e.last("service-policy %s is on an interface")});
}

places_t differing_attachments(const logged_failure_t &e, const char *direction) {
    return e.configuration.stanza_with_both("interface",
                                            {"service-policy", direction, e.captures[1]},
                                            {"service-policy", direction, e.captures[0]});
}
places_t differing_inputs(const logged_failure_t &e) { return differing_attachments(e, "input"); }
places_t differing_outputs(const logged_failure_t &e) { return differing_attachments(e, "output"); }

// A whole line of the configuration, in the map at hand or else anywhere.
places_t line_of_map(const logged_failure_t &e, const std::string &line) {
    const map_name_t map = map_at_hand(e);
    const places_t places = e.configuration.line_below(map.keyword, map.name, line);
    return places.empty() ? e.configuration.whole_lines(line) : places;
}
places_t unexpected_line(const logged_failure_t &e) { return line_of_map(e, e.captures[0]); }
places_t class_line(const logged_failure_t &e) { return line_of_map(e, e.last("found class: %s")); }

places_t class_of_policy(const logged_failure_t &e) {
    return e.configuration.lines_in("policy-map", {"class", e.captures[0]});
}

places_t untyped_policies(const logged_failure_t &e) {
    return e.configuration.untyped("policy-map");
}
places_t bare_attachments(const logged_failure_t &e) {
    return e.configuration.whole_lines("  service-policy");
}
places_t attachment_without_direction(const logged_failure_t &e) {
    return e.configuration.lines_in("interface", {"service-policy", e.captures[0]});
}
places_t policy_in_work(const logged_failure_t &e) {
    return e.configuration.maps("policy-map", e.last(" for policy-map %s"));
}

// ---- The table ----

struct reason_t {
    const char *logged;
    // $1 and $2 stand for what the log line captured, $L for $1 as a line, $M for the map at hand.
    const char *plain_words;
    places_t (*places)(const logged_failure_t &);
    size_t at_least = 0;     // length of the first capture
    bool of_machine = false; // not the configuration's doing
};

// The first row that fits a line counts.
constexpr reason_t reasons[] = {
    {"Too many user system classes; aborting",
     "the policy-map attached under \"system qos\" has more than four classes of its own; besides "
     "class-default and class-fcoe there are only the qos-groups 2 to 5",
     system_policy},
    {"could not find policy-map for service-policy %s; aborting",
     "\"service-policy\" names the policy-map $1, which has no classes or does not exist",
     named_attachments},
    {"Unexpected type unified-fabric service-policy on an interface; aborting",
     "a policy-map with unified-fabric actions (such as pause or mtu) is attached to an "
     "interface; such a policy-map may stand under \"system qos\" only",
     interface_attachment},
    {"Non-matching service-policy names in input direction: %s and %s",
     "an interface has two policy-maps in input direction, $2 and $1; the older release takes one "
     "only",
     differing_inputs},
    {"Non-matching service-policy names in output direction: %s and %s",
     "an interface has two policy-maps in output direction, $2 and $1; the older release takes "
     "one only",
     differing_outputs},
    {"Unexpected service-policy direction %s",
     "the direction of a \"service-policy\" on an interface is \"$1\", neither input nor output",
     attachment_without_direction},
    {"Unexpected text: %s",
     "a line or a name is too long for the converter, which takes up to 198 characters "
     "in a line and 199 in a name",
     unexpected_line, 198},
    {"Unexpected text: %s", "$M has $L where the converter expects a class, a match or a name",
     unexpected_line},
    {"unexpected policy-map format; aborting",
     "a policy-map has no type, but releases from 4.1(3) on write \"policy-map type ...\"; is the "
     "source release right?",
     untyped_policies},
    {"unexpected class format; aborting", "a class of $M has no name or too many words",
     class_line},
    {"unexpected format for class; aborting", "a class of $M has no name", first_line_of_map},
    {"unexpected format for policy-map; aborting", "a policy-map has no name", no_places},
    {"unexpected service-policy format; aborting", "a \"service-policy\" names no policy-map",
     bare_attachments},
    {"unexpected format for service-policy; aborting",
     "a \"service-policy\" names no policy-map, or its direction is a word of more than nine "
     "characters",
     bare_attachments},
    {"Could not find qos-group for %s; aborting", "the class $1 has no class-map of its name",
     class_of_policy},
    {"Could not find class-map for type %s name %s; aborting",
     "a class of a policy-map has no class-map of its name", policy_in_work},
    {"Could not find policy-maps; aborting",
     "the new policy-map has no place: it goes behind the last policy-map of a fitting type, and "
     "there is none with another stanza behind it",
     policy_in_work},
    {"refusing to insert text of length",
     "the rewritten configuration would outgrow the converter's room (five times the file's size; "
     "VLAN-FCoE association: the file's size and 76000 bytes)",
     no_places},
    {"could not allocate memory", "the machine is out of memory", no_places},
    {"failed to allocate memory", "the configuration is too large for the memory", no_places},
    {"failed to get file size", "the converter could not read its copy of the configuration",
     no_places, 0, true},
    {"unexpectedly", "the converter found its copy of the configuration empty", no_places, 0, true},
    {"failed to read", "the converter could not read its copy of the configuration", no_places, 0,
     true},
    {"failed to open", "the converter could not open its copy of the configuration", no_places, 0,
     true},
    {"failed to write", "the converter could not save its copy: the disk may be full", no_places, 0,
     true},
    {"failed to close", "the converter could not save its copy: the disk may be full", no_places, 0,
     true},
};

std::string value_of(char mark, const logged_failure_t &e) {
    std::string line = e.captures.empty() ? "" : e.captures[0];
    switch (mark) {
    case '1':
        return line;
    case '2':
        return e.captures.at(1);
    case 'L':
        return line.empty() ? "an empty line" : "the line \"" + line + '"';
    default:
        return map_at_hand(e).keyword + ' ' + map_at_hand(e).name;
    }
}

std::string filled_in(std::string_view plain_words, const logged_failure_t &e) {
    std::string text;
    for (size_t at = 0; at < plain_words.size(); at++)
        text += plain_words[at] == '$' ? value_of(plain_words[++at], e)
                                       : std::string(1, plain_words[at]);
    return text;
}

std::optional<failure_t> explained_by(const reason_t &row, const lines_t &log, size_t number,
                                      const configuration_t &configuration) {
    const std::string_view line = without_newline(log[number]);
    const auto captures = match(line, row.logged);
    if (!captures || (row.at_least > 0 && captures->at(0).size() < row.at_least))
        return {};
    const lines_t up_to(log.begin(), log.begin() + static_cast<ptrdiff_t>(number) + 1);
    const logged_failure_t evidence{up_to, configuration, *captures};
    if (row.of_machine)
        throw run_error_t(row.plain_words);
    return failure_t{filled_in(row.plain_words, evidence), row.places(evidence), std::string(line),
                     number + 1};
}

} // namespace

failure_t explain_failure(const std::string &log, const std::string &text) {
    const configuration_t configuration(text);
    const lines_t lines = split_lines(log);
    for (size_t number = lines.size(); number-- > 0;) {
        for (const reason_t &row : reasons) {
            if (const auto failure = explained_by(row, lines, number, configuration))
                return *failure;
        }
    }
    if (lines.empty())
        return {.reason = "the converter left no log"};
    return {.reason = "for a reason that only its log tells",
            .log_line = std::string(without_newline(lines.back())),
            .log_line_number = lines.size()};
}

} // namespace infraconvert
