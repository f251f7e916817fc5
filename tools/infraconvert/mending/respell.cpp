#include "mending/respell.h"

#include "meaning/model.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace infraconvert::mending {

using namespace meaning;

namespace {

constexpr std::string_view body_indent = "  ", action_indent = "    ";

// The lines of a text without their newlines, which are to be changed.
class draft_t {
  public:
    explicit draft_t(std::string_view text) {
        for (size_t from = 0, end; from < text.size(); from = end + 1) {
            end = std::min(text.find('\n', from), text.size());
            lines.push_back(text.substr(from, end - from));
        }
    }

    void set(uint32_t line, const std::string &now) {
        if (lines[line - 1] != now)
            changed[line] = now;
    }
    void remove(uint32_t line) { changed[line] = std::nullopt; }
    size_t count() const { return lines.size(); }
    std::string_view line(uint32_t number) const { return lines[number - 1]; }

    respelling_t result(const std::string &words) const {
        respelling_t result = {"", words};
        for (uint32_t number = 1; number <= lines.size(); number++) {
            const auto edit = changed.find(number);
            if (edit == changed.end())
                result.text += std::string(lines[number - 1]) + '\n';
            else if (edit->second)
                result.text += *edit->second + '\n';
        }
        return result;
    }

  private:
    std::vector<std::string_view> lines;
    std::map<uint32_t, std::optional<std::string>> changed;
};

std::string in_words(std::string_view text) { return joined(split_words(text)); }

// ---- the written form

bool is_vlan(const words_t &header) { return header[0] == "vlan" && header.size() == 2; }

bool means_nothing(std::string_view line) {
    const words_t words = split_words(line);
    return words.empty() || words[0][0] == '!' || words[0][0] == '#';
}

// The two features whose lines converters look for by their words.
bool is_feature_line(const words_t &words) {
    return words[0] == "feature" || words[0] == "npiv" || words[0] == "port-security" ||
           words[0] == "fc-port-security" || words[0] == "mac" || words[0] == "mac-address-table";
}

bool is_fabric_line(const words_t &words) {
    return begins_with(words, {"fex", "associate"}) ||
           begins_with(words, {"switchport", "mode", "fex-fabric"});
}

class writer_t {
  public:
    writer_t(std::string_view whole, std::string_view release)
        : model(whole, release, release), draft(whole) {}

    respelling_t run() {
        for (size_t i = 0; i < model.reading.stanzas.size(); i++)
            write(model.reading.stanzas[i], next_header(i));
        for (uint32_t number = 1; number <= draft.count(); number++) {
            if (draft.line(number).ends_with('\r') && !touched.contains(number))
                draft.set(number,
                          std::string(draft.line(number).substr(0, draft.line(number).size() - 1)));
        }
        respelling_t result =
            draft.result("lines as the switch writes them: two blanks in front of a line, four in "
                         "front of an action, one between words, none behind");
        const words_t first = split_words(draft.count() > 0 ? draft.line(1) : "");
        if (!first.empty() && (is_map(first) || is_feature_line(first)))
            result.text.insert(0, "!\n"); // converters look for a newline in front
        return result;
    }

  private:
    uint32_t next_header(size_t stanza) const {
        return stanza + 1 < model.reading.stanzas.size()
                   ? model.reading.stanzas[stanza + 1].header.number
                   : static_cast<uint32_t>(draft.count()) + 1;
    }

    void set(uint32_t number, const std::string &text) {
        draft.set(number, text);
        touched.insert(number);
    }

    void write(const stanza_t &stanza, uint32_t end) {
        const words_t header = split_words(stanza.header.text);
        if (header.empty())
            return;
        const bool map = is_map(header);
        const bool system = is_exactly(stanza.header.text, {"system", "qos"});
        if (map || system || is_vlan(header) || is_feature_line(header) || header[0] == "interface")
            set(stanza.header.number, in_words(stanza.header.text));
        for (const line_t &line : stanza.body)
            write_body(header, map, system, line);
        if (map)
            remove_between(stanza, end);
    }

    void write_body(const words_t &header, bool map, bool system, const line_t &line) {
        const words_t words = split_words(line.text);
        const bool attachment = words[0] == "service-policy";
        const bool action =
            map && header[0] == "policy-map" && words[0] != "class" && words[0] != "description";
        if (action)
            set(line.number, std::string(action_indent) + in_words(line.text));
        else if (map || system || attachment || is_vlan(header) || is_fabric_line(words))
            set(line.number, std::string(body_indent) + in_words(line.text));
    }

    // Empty lines and comments belong to the stanza above them, where the converters expect the
    // lines of a map only.
    void remove_between(const stanza_t &stanza, uint32_t end) {
        for (uint32_t number = stanza.header.number + 1; number < end; number++) {
            if (!means_nothing(draft.line(number)))
                continue;
            draft.remove(number);
            touched.insert(number);
        }
    }

    const model_t model;
    draft_t draft;
    std::set<uint32_t> touched;
};

// ---- names

constexpr std::string_view keywords[] = {"class-map",   "policy-map",    "service-policy",
                                         "qos-group",   "port-security", "match-any",
                                         "match-all",   "set cos",       "multicast-optimize",
                                         "queue-limit", "bandwidth",     "priority",
                                         "pause",       "match",         "type",
                                         "class",       "description",   "system",
                                         "mtu",         "fcoe",          "qos",
                                         "vlan",        "copp",          "police"};

bool is_fixed(std::string_view name) { return is_predefined(name); }

std::string plain_name(std::string name) {
    for (const std::string_view keyword : keywords) {
        for (size_t at = 0; (at = name.find(keyword, at)) != name.npos; at += keyword.size() + 1) {
            const size_t dash = name.find('-', at);
            if (dash != name.npos && dash < at + keyword.size())
                name[dash] = '_';
            else
                name.insert(at + 1, "_");
        }
    }
    return name;
}

// The line with the last word that is `name` replaced.
std::string renamed(std::string_view line, std::string_view name, const std::string &now) {
    const size_t at = line.rfind(name);
    return std::string(line.substr(0, at)) + now + std::string(line.substr(at + name.size()));
}

} // namespace

respelling_t in_written_form(std::string_view text, std::string_view release) {
    return writer_t(text, release).run();
}

respelling_t with_plain_names(std::string_view text, std::string_view release) {
    const model_t model(text, release, release);
    std::set<std::string> taken;
    for (const class_map_t &map : model.class_maps)
        taken.insert(std::string(map.name));
    for (const policy_t &policy : model.policies)
        taken.insert(std::string(policy.name));
    std::map<std::string, std::string> names;
    const auto rename = [&](std::string_view name) {
        if (is_fixed(name) || names.contains(std::string(name)))
            return;
        std::string now = plain_name(std::string(name));
        if (now != name) {
            while (taken.contains(now))
                now += "_2";
            names[std::string(name)] = now;
            taken.insert(now);
        }
    };
    for (const class_map_t &map : model.class_maps)
        rename(map.name);
    for (const policy_t &policy : model.policies)
        rename(policy.name);

    draft_t draft(text);
    const auto edit = [&](uint32_t line, std::string_view name) {
        const auto now = names.find(std::string(name));
        if (now != names.end())
            draft.set(line, renamed(draft.line(line), name, now->second));
    };
    for (const class_map_t &map : model.class_maps) {
        for (const uint32_t line : map.headers)
            edit(line, map.name);
    }
    for (const policy_t &policy : model.policies) {
        for (const uint32_t line : policy.headers)
            edit(line, policy.name);
        for (const class_t &each : policy.classes) {
            for (const uint32_t line : each.lines)
                edit(line, each.name);
        }
    }
    for (const attachment_t &attachment : model.attachments)
        edit(attachment.line, attachment.name);
    if (names.empty())
        return {std::string(text), ""};
    std::string words = "maps whose names hold a keyword get another name:";
    for (const auto &[old, now] : names)
        (((words += words.ends_with(':') ? " " : ", ") += old) += " is ") += now;
    return draft.result(words);
}

respelling_t without_descriptions(std::string_view text, std::string_view release) {
    const model_t model(text, release, release);
    draft_t draft(text);
    for (const stanza_t &stanza : model.reading.stanzas) {
        if (!is_map(split_words(stanza.header.text)))
            continue;
        for (const line_t &line : stanza.body) {
            if (begins_with(split_words(line.text), {"description"}))
                draft.remove(line.number);
        }
    }
    return draft.result("maps without their descriptions");
}

namespace {

std::string without_idle_classes(std::string_view text, std::string_view release) {
    const model_t model(text, release, release);
    draft_t draft(text);
    for (const stanza_t &stanza : model.reading.stanzas) {
        const words_t header = split_words(stanza.header.text);
        if (header.empty() || header[0] != "policy-map")
            continue;
        const bool typed = header.size() > 2 && header[1] == "type";
        bool idle = false;
        for (const line_t &line : stanza.body) {
            const words_t words = split_words(line.text);
            if (words[0] == "class")
                idle = !is_predefined(words.back()) &&
                       !model.class_map(typed ? header[2] : types::none, words.back());
            if (idle)
                draft.remove(line.number);
        }
    }
    return draft.result("").text;
}

} // namespace

respelling_t without_idle_lines(std::string_view text, std::string_view release) {
    const std::string busy = without_idle_classes(text, release);
    const model_t model(busy, release, release);
    draft_t draft(busy);
    for (const attachment_t &attachment : model.attachments) {
        const policy_t *policy = model.policy_of(attachment);
        if (!policy || policy->classes.empty())
            draft.remove(attachment.line);
    }
    return draft.result("classes without a class-map, and attachments of policy-maps without "
                        "classes, left out");
}

// ---- order

respelling_t with_fabric_order(std::string_view text, std::string_view release) {
    const model_t model(text, release, release);
    draft_t draft(text);
    for (const auto &[key, block] : model.blocks) {
        const fabric_line_t *member = nullptr;
        for (const auto &line : block.fabric) {
            const bool mode = !begins_with(split_words(line.text), {"fex", "associate"});
            if (!mode && !member)
                member = &line;
            if (!mode || !member)
                continue;
            draft.remove(line.line);
            draft.set(member->line, std::string(draft.line(line.line)) + '\n' +
                                        std::string(draft.line(member->line)));
            break;
        }
    }
    return draft.result("\"switchport mode fex-fabric\" ahead of \"fex associate\"");
}

} // namespace infraconvert::mending
