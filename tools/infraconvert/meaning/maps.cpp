// Class-maps, policy-maps and attachments:
//
//     class-map type qos match-any voice      class-map voice
//       match cos 5                             match cos 5
//     policy-map type queuing dc              policy-map dc
//       class type queuing voice                class voice
//         priority                                priority
//     system qos                              system qos
//       service-policy type queuing input dc    service-policy dc

#include "meaning/model.h"

#include <algorithm>
#include <charconv>

namespace infraconvert::meaning {

namespace {

// What follows the keyword of a map, a class or an attachment.
struct named_t {
    bool typed = false;
    std::string_view type, name;
    words_t front; // words between type and name
};

named_t read_name(const words_t &words) {
    named_t named;
    size_t next = 1;
    if (words.size() > 2 && words[1] == "type") {
        named.typed = true;
        named.type = words[2];
        next = 3;
    }
    if (words.size() > next) {
        named.name = words.back();
        named.front.assign(words.begin() + static_cast<ptrdiff_t>(next), words.end() - 1);
    }
    return named;
}

template<typename map_t>
map_t &map_named(std::vector<map_t> &maps, names_index_t &names, const named_t &named) {
    for (const uint32_t known : names.of(named.name)) {
        if (maps[known].type == named.type)
            return maps[known];
    }
    names.add(named.name, static_cast<uint32_t>(maps.size()));
    maps.emplace_back();
    maps.back().type = named.type;
    maps.back().name = named.name;
    return maps.back();
}

// "02" is the group 2.
std::string_view plain_number(std::string_view number) {
    while (number.size() > 1 && number[0] == '0')
        number.remove_prefix(1);
    return number;
}

// ---- class-maps

void read_match(class_map_t &map, const line_t &line, const words_t &words) {
    const std::span<const std::string_view> rest = std::span(words).subspan(1);
    if (rest.size() == 2 && rest[0] == "qos-group")
        map.groups.push_back({std::string(plain_number(rest[1])), line.number});
    else
        map.matches.push_back({joined(rest), line.number});
}

void read_class_map(model_t &model, const stanza_t &stanza, const named_t &named,
                    const std::string &owner) {
    class_map_t &map = map_named(model.class_maps, model.class_map_names, named);
    map.headers.push_back(stanza.header.number);
    map.all = map.all || std::count(named.front.begin(), named.front.end(), "match-all") > 0;
    if (!named.front.empty())
        model.front_words.push_back({named.type, named.name, named.front, stanza.header.number});
    for (const line_t &line : stanza.body) {
        const words_t words = split_words(line.text);
        if (words[0] == "match" && words.size() > 1) {
            read_match(map, line, words);
        } else if (words[0] == "description") {
            model.descriptions.push_back({owner, line.text, line.number});
        } else {
            block_of(model, owner).lines.push_back(line);
            model.misfits.push_back({misfit_t::map_line, line.number, std::string(line.text)});
        }
    }
}

// ---- policy-maps

action_kind_t kind_of(std::string_view keyword) {
    if (keyword == "set qos-group")
        return action_kind_t::group;
    if (keyword == "bandwidth" || keyword == "priority")
        return action_kind_t::scheduling;
    for (const std::string_view network :
         {"pause", "mtu", "multicast-optimize", "queue-limit", "set cos"}) {
        if (keyword == network)
            return action_kind_t::network;
    }
    return action_kind_t::other;
}

std::optional<long> number_in(std::string_view word) {
    long value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size())
        return {};
    return value;
}

action_t read_action(const line_t &line, const words_t &words) {
    std::span<const std::string_view> all(words);
    if (all[0] == "no" && all.size() > 1)
        all = all.subspan(1);
    const size_t length = all[0] == "set" && all.size() > 1 ? 2 : 1;
    action_t action = {action_kind_t::other, joined(all.first(length)), joined(words), line.number};
    action.kind = kind_of(action.keyword);
    if (words[0] == "mtu" && words.size() == 2)
        action.mtu = number_in(words[1]);
    return action;
}

// Of an action that the model does not know, several may stand side by side.
bool replaces(const action_t &action, const action_t &earlier) {
    const bool once = action.kind != action_kind_t::other || action.keyword == "police" ||
                      action.keyword.starts_with("set ");
    return earlier.keyword == action.keyword && (once || earlier.text == action.text);
}

void add_action(class_t &to, action_t action) {
    std::erase_if(to.actions, [&](const action_t &earlier) { return replaces(action, earlier); });
    to.actions.push_back(std::move(action));
}

class_t &class_named(policy_t &policy, std::string_view name) {
    if (const auto known = policy.class_names.of(name); !known.empty())
        return policy.classes[known.front()];
    policy.class_names.add(name, static_cast<uint32_t>(policy.classes.size()));
    policy.classes.push_back({name, {}, {}});
    return policy.classes.back();
}

// In type qos and for the control plane a class line need not repeat the type.
bool fits(const named_t &line, std::string_view policy_type) {
    if (line.typed)
        return line.type == policy_type && line.front.empty();
    return line.front.empty() && (policy_type == types::none || policy_type == types::qos ||
                                  policy_type == types::control_plane);
}

class_t *read_class(model_t &model, policy_t &policy, const line_t &line, const words_t &words) {
    const named_t named = read_name(words);
    if (named.name.empty() || !fits(named, policy.type))
        model.misfits.push_back({named.name.empty() ? misfit_t::no_name : misfit_t::class_type,
                                 line.number, std::string(line.text)});
    class_t &read = class_named(policy, named.name);
    read.lines.push_back(line.number);
    return &read;
}

void read_policy(model_t &model, const stanza_t &stanza, const named_t &named,
                 const std::string &owner) {
    policy_t &policy = map_named(model.policies, model.policy_names, named);
    policy.headers.push_back(stanza.header.number);
    if (!named.front.empty())
        model.front_words.push_back({named.type, named.name, named.front, stanza.header.number});
    class_t *current = nullptr;
    for (const line_t &line : stanza.body) {
        const words_t words = split_words(line.text);
        if (words[0] == "class") {
            current = read_class(model, policy, line, words);
        } else if (words[0] == "description") {
            model.descriptions.push_back({owner, line.text, line.number});
        } else if (current) {
            add_action(*current, read_action(line, words));
        } else {
            block_of(model, owner).lines.push_back(line);
            model.misfits.push_back({misfit_t::map_line, line.number, std::string(line.text)});
        }
    }
}

// What a stanza attaches policies to; nothing for stanzas that attach none. There the line is one
// that the model knows nothing about, even if a converter takes it for an attachment.
std::optional<place_kind_t> kind_of_place(const words_t &header) {
    if (header.size() == 2 && header[0] == "system" && header[1] == "qos")
        return place_kind_t::system;
    if (header.size() == 1 && header[0] == "control-plane")
        return place_kind_t::control_plane;
    if (is_interface(header))
        return place_kind_t::interface;
    return {};
}

} // namespace

std::string_view action_t::group() const {
    return plain_number(std::string_view(text).substr(std::min(text.size(), keyword.size() + 1)));
}

const class_t *policy_t::find(std::string_view class_name) const {
    const auto found = class_names.of(class_name);
    return found.empty() ? nullptr : &classes[found.front()];
}

bool policy_t::has_actions() const {
    return std::any_of(classes.begin(), classes.end(),
                       [](const class_t &c) { return !c.actions.empty(); });
}

bool is_interface(const words_t &header) { return header.size() > 1 && header[0] == "interface"; }

bool is_map(const words_t &header) { return header[0] == "class-map" || header[0] == "policy-map"; }

void read_map(model_t &model, const stanza_t &stanza, const words_t &header) {
    const named_t named = read_name(header);
    if (named.name.empty())
        model.misfits.push_back(
            {misfit_t::no_name, stanza.header.number, std::string(stanza.header.text)});
    const std::string owner = std::string(header[0]) + ' ' + std::string(named.name);
    if (header[0] == "class-map")
        read_class_map(model, stanza, named, owner);
    else
        read_policy(model, stanza, named, owner);
}

bool read_attachment(model_t &model, const stanza_t &stanza, const line_t &line,
                     const words_t &words) {
    if (words[0] != "service-policy" || line.indent == 0 || stanza.header.text.empty())
        return false;
    const words_t header = full_words(stanza.header.text, position_t::first_line);
    const auto kind = kind_of_place(header);
    if (!kind)
        return false;
    named_t named = read_name(words);
    attachment_t attachment = {kind == place_kind_t::system ? "system" : joined(header),
                               *kind,
                               named.type,
                               "",
                               named.name,
                               line.number};
    if (named.front.size() == 1 && (named.front[0] == "input" || named.front[0] == "output"))
        attachment.direction = named.front[0];
    else if (!named.front.empty() || named.name.empty())
        return false;
    model.attachments.push_back(std::move(attachment));
    return true;
}

} // namespace infraconvert::meaning
