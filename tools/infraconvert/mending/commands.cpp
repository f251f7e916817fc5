#include "mending/commands.h"

#include "meaning/reading.h"

#include <algorithm>

namespace infraconvert::mending {

namespace {

using meaning::split_words;

// A line by its words.
std::string plain(std::string_view line) { return meaning::joined(split_words(line)); }

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

// Where the words of a line begin, else its end.
size_t indentation_of(std::string_view line) {
    size_t at = 0;
    while (at < line.size() && is_blank(line[at]))
        at++;
    return at;
}

// Is `words` what plain() makes of the line? Each line of a text is asked for each line of a fix.
bool is_plain(std::string_view line, std::string_view words) {
    line.remove_prefix(indentation_of(line));
    for (const char c : words) {
        if (line.empty() || (c == ' ' ? !is_blank(line[0]) : line[0] != c))
            return false;
        line.remove_prefix(c == ' ' ? indentation_of(line) : 1);
    }
    return indentation_of(line) == line.size();
}

bool starts_stanza(std::string_view line) {
    return !line.empty() &&
           ((line[0] >= 'a' && line[0] <= 'z') || (line[0] >= 'A' && line[0] <= 'Z'));
}

bool means_something(std::string_view line) {
    const size_t first = indentation_of(line);
    return first < line.size() && line[first] != '!' && line[first] != '#';
}

// What an action is replaced by: a later one with the same words in front.
std::string keyword_of(std::string_view action) {
    const auto words = split_words(action);
    return words.size() > 1 && words[0] == "set" ? meaning::joined(std::span(words).first(2))
                                                 : std::string(words.empty() ? "" : words[0]);
}

bool is_class_line(std::string_view line) {
    constexpr std::string_view word = "class";
    line.remove_prefix(indentation_of(line));
    return line.starts_with(word) && (line.size() == word.size() || is_blank(line[word.size()]));
}

// "class type qos voice" and "class voice" are one line of a policy-map.
std::string class_name(std::string_view line) {
    const auto words = split_words(line);
    return words.empty() ? "" : std::string(words.back());
}

// A configuration as lines that can be changed. They point into its text and into the commands.
class editor_t {
  public:
    explicit editor_t(std::string_view text) {
        size_t from = 0;
        for (size_t end = 0; (end = text.find('\n', from)) != text.npos; from = end + 1)
            lines.emplace_back(text.substr(from, end - from));
        ended = from == text.size();
        if (!ended)
            lines.emplace_back(text.substr(from));
    }

    void apply(const command_t &command) {
        if (command.how == command_t::remove)
            return remove_stanzas(command.header);
        if (command.how == command_t::apart)
            return insert_apart(command);
        if (stanzas(command.header).empty())
            insert(place_for(command.header), command.header);
        const bool policy = command.header.starts_with("policy-map ");
        std::string in_class;
        for (const typed_line_t &line : command.body) {
            if (policy && is_class_line(line.text)) {
                in_class = line.removes ? "" : class_name(line.text);
                line.removes ? remove_class(command.header, class_name(line.text))
                             : add_class(command.header, line.text);
            } else if (policy && !in_class.empty()) {
                edit_action(command.header, in_class, line);
            } else if (line.removes) {
                remove_from_body(command.header, line.text);
            } else {
                add_to_body(command, line.text);
            }
        }
    }

    std::string text() const {
        std::string all;
        for (size_t i = 0; i < lines.size(); i++) {
            all += lines[i];
            if (i + 1 < lines.size() || ended)
                all += '\n';
        }
        return all;
    }

  private:
    struct range_t {
        size_t first, end;
    };

    // The stanzas with this first line.
    std::vector<range_t> stanzas(const std::string &header) const {
        std::vector<range_t> found;
        const std::string wanted = plain(header);
        for (size_t i = 0; starts_stanza(wanted) && i < lines.size(); i++) {
            if (!lines[i].empty() && lines[i][0] == wanted[0] && is_plain(lines[i], wanted))
                found.push_back({i, end_of_stanza(i)});
        }
        return found;
    }

    size_t end_of_stanza(size_t first) const {
        size_t end = first + 1;
        while (end < lines.size() && !starts_stanza(lines[end]))
            end++;
        return end;
    }

    // Behind the last line in a range that means something.
    size_t last_in(range_t range) const {
        while (range.end > range.first + 1 && !means_something(lines[range.end - 1]))
            range.end--;
        return range.end;
    }

    void insert(size_t at, std::string_view line) {
        lines.insert(lines.begin() + static_cast<ptrdiff_t>(at), line);
    }

    void remove(range_t range) {
        lines.erase(lines.begin() + static_cast<ptrdiff_t>(range.first),
                    lines.begin() + static_cast<ptrdiff_t>(range.end));
    }

    void remove_stanzas(const std::string &header) {
        for (auto found = stanzas(header); !found.empty(); found = stanzas(header)) {
            const range_t last = found.back();
            remove({last.first, last_in(last)});
        }
    }

    // Behind the last stanza whose line begins with these words; the end when there is none.
    size_t behind_last(const std::string &start) const {
        for (size_t i = lines.size(); i-- > 0;) {
            if (starts_stanza(lines[i]) && plain(lines[i]).starts_with(start + ' '))
                return last_in({i, end_of_stanza(i)});
        }
        return lines.size();
    }

    size_t ahead_of_first(const std::string &start) const {
        for (size_t i = 0; i < lines.size(); i++) {
            if (starts_stanza(lines[i]) && (plain(lines[i]) + ' ').starts_with(start + ' '))
                return i;
        }
        return lines.size();
    }

    void insert_apart(const command_t &command) {
        size_t at = ahead_of_first(std::string(split_words(command.header)[0]));
        insert(at++, command.header);
        for (const typed_line_t &line : command.body)
            insert(at++, line.text);
    }

    size_t place_for(const std::string &header) const {
        const std::string kind(split_words(header)[0]);
        if (const size_t at = behind_last(kind); at < lines.size())
            return at;
        if (kind == "policy-map") {
            if (const size_t at = behind_last("class-map"); at < lines.size())
                return at;
        }
        const std::vector<std::string> followers =
            kind == "class-map"    ? std::vector<std::string>{"policy-map", "system qos"}
            : kind == "policy-map" ? std::vector<std::string>{"system qos", "interface"}
                                   : std::vector<std::string>{};
        for (const std::string &follower : followers) {
            if (const size_t at = ahead_of_first(follower); at < lines.size())
                return at;
        }
        return kind == "system" ? behind_last("policy-map") : lines.size();
    }

    // ---- lines of a body

    // The line of the stanzas with this first line that has these words; the end of the text when
    // there is none.
    size_t find(const std::string &header, const std::string &words) const {
        for (const range_t &stanza : stanzas(header)) {
            for (size_t i = stanza.first + 1; i < stanza.end; i++) {
                if (is_plain(lines[i], words))
                    return i;
            }
        }
        return lines.size();
    }

    void remove_from_body(const std::string &header, const std::string &line) {
        const std::string words = plain(line);
        for (size_t at = find(header, words); at < lines.size(); at = find(header, words))
            remove({at, at + 1});
    }

    void add_to_body(const command_t &command, const std::string &line) {
        const std::string words = plain(line);
        if (find(command.header, words) == lines.size())
            insert(place_in(command, words), line);
    }

    // Ahead of the line that follows it in the original, else at the end of the stanza.
    size_t place_in(const command_t &command, const std::string &words) const {
        auto next = std::find(command.order.begin(), command.order.end(), words);
        while (next != command.order.end() && ++next != command.order.end()) {
            if (const size_t at = find(command.header, *next); at < lines.size())
                return at;
        }
        return last_in(stanzas(command.header).back());
    }

    // ---- classes of a policy-map

    // The lines of a class; empty where the policy-map has none of this name.
    range_t class_range(const std::string &header, const std::string &name) const {
        for (const range_t &stanza : stanzas(header)) {
            for (size_t i = stanza.first + 1; i < stanza.end; i++) {
                if (!is_class_line(lines[i]) || class_name(lines[i]) != name)
                    continue;
                size_t end = i + 1;
                while (end < stanza.end && !is_class_line(lines[end]))
                    end++;
                return {i, end};
            }
        }
        return {0, 0};
    }

    void add_class(const std::string &header, const std::string &line) {
        if (class_range(header, class_name(line)).end == 0)
            insert(last_in(stanzas(header).back()), line);
    }

    void remove_class(const std::string &header, const std::string &name) {
        for (range_t range = class_range(header, name); range.end > 0;
             range = class_range(header, name))
            remove({range.first, last_in(range)});
    }

    void edit_action(const std::string &header, const std::string &name,
                     const typed_line_t &action) {
        const range_t range = class_range(header, name);
        const std::string wanted = plain(action.text), keyword = keyword_of(action.text);
        size_t at = last_in(range);
        for (size_t i = range.end; i-- > range.first + 1;) {
            const std::string there = plain(lines[i]);
            if (action.removes ? there == wanted : keyword_of(there) == keyword) {
                remove({i, i + 1});
                at = i;
            }
        }
        if (!action.removes)
            insert(std::min(at, lines.size()), action.text);
    }

    std::vector<std::string_view> lines;
    bool ended; // with a newline
};

} // namespace

command_t &block(commands_t &commands, const std::string &header) {
    for (command_t &command : commands) {
        if (command.header == header && command.how == command_t::enter)
            return command;
    }
    commands.push_back({.header = header});
    return commands.back();
}

void remove_stanza(commands_t &commands, const std::string &header) {
    commands.push_back({.header = header, .how = command_t::remove});
}

namespace {

void add_once(std::vector<typed_line_t> &body, const typed_line_t &line) {
    const bool known = std::any_of(body.begin(), body.end(), [&](const typed_line_t &each) {
        return each.text == line.text && each.removes == line.removes;
    });
    if (!known)
        body.push_back(line);
}

} // namespace

void add_line(commands_t &commands, const std::string &header, const std::string &line) {
    add_once(block(commands, header).body, {line});
}

void remove_line(commands_t &commands, const std::string &header, const std::string &line) {
    add_once(block(commands, header).body, {line, true});
}

void add_action(commands_t &commands, const std::string &policy, const std::string &class_line,
                const typed_line_t &action) {
    std::vector<typed_line_t> &body = block(commands, policy).body;
    auto at = std::find_if(body.begin(), body.end(), [&](const typed_line_t &line) {
        return line.text == class_line && !line.removes;
    });
    if (at == body.end())
        at = body.insert(body.end(), {class_line});
    for (at++; at != body.end() && !is_class_line(at->text); at++) {
        if (at->text == action.text && at->removes == action.removes)
            return;
    }
    body.insert(at, action);
}

void merge(commands_t &commands, const commands_t &more) {
    for (const command_t &command : more) {
        if (command.how != command_t::enter) {
            commands.push_back(command);
            continue;
        }
        command_t &into = block(commands, command.header);
        if (into.order.empty())
            into.order = command.order;
        std::string in_class;
        for (const typed_line_t &line : command.body) {
            if (command.header.starts_with("policy-map ") && is_class_line(line.text))
                in_class = line.removes ? "" : line.text;
            if (in_class.empty() || in_class == line.text)
                add_once(block(commands, command.header).body, line);
            else
                add_action(commands, command.header, in_class, line);
        }
    }
}

std::vector<std::string> lines_of(const commands_t &commands) {
    std::vector<std::string> lines;
    for (const command_t &command : commands) {
        lines.push_back((command.how == command_t::remove ? "no " : "") + command.header);
        for (const typed_line_t &line : command.body) {
            const size_t indent = std::min(line.text.find_first_not_of(" \t"), line.text.size());
            lines.push_back(line.text.substr(0, indent) + (line.removes ? "no " : "") +
                            line.text.substr(indent));
        }
    }
    return lines;
}

std::string applied(std::string_view text, const commands_t &commands) {
    editor_t editor(text);
    for (const command_t &command : commands)
        editor.apply(command);
    return editor.text();
}

namespace {

// Beyond this nobody reads the lines one by one, and trying each takes too long.
constexpr size_t most_tried = 200;

} // namespace

void put_removals_first(commands_t &commands) {
    for (command_t &command : commands) {
        if (!command.header.starts_with("policy-map "))
            std::stable_partition(command.body.begin(), command.body.end(),
                                  [](const typed_line_t &line) { return line.removes; });
    }
}

commands_t without_needless(const commands_t &commands, const is_enough_t &is_enough) {
    if (lines_of(commands).size() > most_tried)
        return commands;
    commands_t needed = commands;
    // From the last line to the first, so that a class goes when none of its actions is needed.
    for (size_t i = needed.size(); i-- > 0;) {
        for (size_t j = needed[i].body.size(); j-- > 0;) {
            const std::vector<typed_line_t> body = needed[i].body;
            const bool holds_actions = is_class_line(body[j].text) && !body[j].removes &&
                                       j + 1 < body.size() && !is_class_line(body[j + 1].text);
            if (holds_actions)
                continue;
            needed[i].body.erase(needed[i].body.begin() + static_cast<ptrdiff_t>(j));
            if (!is_enough(needed))
                needed[i].body = body;
        }
        if (!needed[i].body.empty())
            continue;
        const command_t command = needed[i];
        needed.erase(needed.begin() + static_cast<ptrdiff_t>(i));
        if (!is_enough(needed))
            needed.insert(needed.begin() + static_cast<ptrdiff_t>(i), command);
    }
    return needed;
}

commands_t without_needless(std::string_view text, const commands_t &commands) {
    const std::string wanted = applied(text, commands);
    return without_needless(
        commands, [&](const commands_t &fewer) { return applied(text, fewer) == wanted; });
}

} // namespace infraconvert::mending
