#include "mending/commands.h"

#include "meaning/reading.h"
#include "mending/line_words.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>

namespace infraconvert::mending {

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
    const command_t *entered = nullptr;
    for (const command_t &command : commands) {
        const bool enters = command.how == command_t::enter;
        if (!enters || !entered || entered->header != command.header)
            lines.push_back((command.how == command_t::remove ? "no " : "") + command.header);
        entered = enters ? &command : nullptr;
        for (const typed_line_t &line : command.body) {
            const size_t indent = std::min(line.text.find_first_not_of(" \t"), line.text.size());
            lines.push_back(line.text.substr(0, indent) + (line.removes ? "no " : "") +
                            line.text.substr(indent));
        }
    }
    return lines;
}

namespace {

// Beyond this nobody reads the lines one by one, and trying each takes too long.
constexpr size_t most_tried = 200;

} // namespace

namespace {

bool is_detached(const typed_line_t &line) {
    return line.removes &&
           meaning::begins_with(meaning::split_words(line.text), {"service-policy"});
}

// The lines of a place that detach policies, as a block of their own.
command_t split_detached(command_t &command) {
    command_t detached = {.header = command.header, .order = command.order};
    std::copy_if(command.body.begin(), command.body.end(), std::back_inserter(detached.body),
                 is_detached);
    std::erase_if(command.body, is_detached);
    return detached;
}

enum rank_t {
    detached,
    old_policies,
    old_class_maps,
    class_maps,
    policies,
    places,
    idle_class_maps
};

using headers_t = std::unordered_set<std::string_view>;

rank_t rank_of(const command_t &command, const headers_t &entered) {
    const bool removes = command.how == command_t::remove;
    if (command.header.starts_with("policy-map "))
        return removes ? old_policies : policies;
    if (!command.header.starts_with("class-map "))
        return places;
    return !removes                           ? class_maps
           : entered.contains(command.header) ? old_class_maps
                                              : idle_class_maps;
}

} // namespace

commands_t in_order_of_typing(const commands_t &commands) {
    headers_t entered;
    for (const command_t &command : commands) {
        if (command.how != command_t::remove)
            entered.insert(command.header);
    }
    std::vector<std::pair<rank_t, command_t>> ranked;
    for (command_t command : commands) {
        const rank_t rank = rank_of(command, entered);
        if (rank == places && command.how == command_t::enter) {
            if (command_t before = split_detached(command); !before.body.empty()) {
                ranked.emplace_back(detached, std::move(before));
                if (command.body.empty())
                    continue;
            }
            std::stable_partition(command.body.begin(), command.body.end(),
                                  [](const typed_line_t &line) { return line.removes; });
        }
        ranked.emplace_back(rank, std::move(command));
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    commands_t ordered;
    for (auto &[rank, command] : ranked)
        ordered.push_back(std::move(command));
    return ordered;
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
