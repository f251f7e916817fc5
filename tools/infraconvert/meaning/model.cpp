#include "meaning/model.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

bool is_fabric_line(const words_t &words) {
    return begins_with(words, {"fex", "associate"}) ||
           (words.size() == 3 && begins_with(words, {"switchport", "mode", "fex-fabric"}));
}

// The first line of a stanza in one spelling, whatever the release.
std::string key_of(model_t &model, const line_t &header, const words_t &words) {
    const std::span<const std::string_view> all(words);
    const bool off = words[0] == "no" && words.size() > 1;
    const auto command = off ? all.subspan(1) : all;
    const std::string no = off ? "no " : "";
    const auto spelled = [&](spelled_t::command_t which, std::string_view now, size_t old_words) {
        model.spelled.push_back({which, header.text, header.number});
        const std::string rest = joined(command.subspan(old_words));
        return no + std::string(now) + (rest.empty() ? "" : " ") + rest;
    };
    if (command[0] == "port-security" || command[0] == "fc-port-security")
        return spelled(spelled_t::fc_command, "fc-port-security", 1);
    if (begins_with(command, {"mac", "address-table"}))
        return spelled(spelled_t::mac, "mac-address-table", 2);
    if (command[0] == "mac-address-table")
        return spelled(spelled_t::mac, "mac-address-table", 1);
    if (words.size() == 2 && words[0] == "version")
        return "version"; // which release wrote the text is no part of what it says
    return joined(words);
}

// A line that belongs below another one, and that no release reads where it opens a stanza.
bool belongs_below(std::string_view word) {
    return word == "match" || word == "class" || word == "service-policy";
}

// A first line that no release reads below another one.
bool belongs_at_the_start(const words_t &words) {
    return words.size() > 1 && (words[0] == "class-map" || words[0] == "policy-map");
}

void read_body(model_t &model, const stanza_t &stanza, const std::string &key) {
    for (const line_t &line : stanza.body) {
        const words_t words = split_words(line.text);
        if (read_attachment(model, stanza, line, words))
            continue;
        block_t &block = block_of(model, key);
        if (is_fabric_line(words) && line.indent > 0)
            block.fabric.push_back(line);
        else
            block.lines.push_back(line);
        if (belongs_at_the_start(words))
            model.misfits.push_back({misfit_t::stray_line, line.number, std::string(line.text)});
    }
}

void read_stanza(model_t &model, const stanza_t &stanza) {
    const words_t header = split_words(stanza.header.text);
    if (header.empty())
        return read_body(model, stanza, "");
    if (is_map(header))
        return read_map(model, stanza, header);
    if (read_feature(model, stanza, header) || read_vlans(model, stanza, header))
        return;
    const std::string key = key_of(model, stanza.header, header);
    block_t &block = block_of(model, key);
    if (block.headers.empty())
        block.header = stanza.header.text;
    block.headers.push_back(stanza.header.number);
    if (belongs_below(header[0]))
        model.misfits.push_back(
            {misfit_t::stray_line, stanza.header.number, std::string(stanza.header.text)});
    read_body(model, stanza, key);
}

// ---- features

// The feature that a first line switches, in the spelling of this release or another one.
std::string feature_named(model_t &model, const line_t &header,
                          std::span<const std::string_view> command) {
    const auto spelled = [&](spelled_t::command_t which, const char *name) {
        model.spelled.push_back({which, header.text, header.number});
        return name;
    };
    if (command.size() != 2)
        return "";
    if (begins_with(command, {"npiv", "enable"}) || begins_with(command, {"feature", "npiv"}))
        return spelled(spelled_t::npiv, "npiv");
    if (begins_with(command, {"port-security", "enable"}) ||
        begins_with(command, {"feature", "fc-port-security"}))
        return spelled(spelled_t::fc_feature, "fc-port-security");
    if (begins_with(command, {"feature", "port-security"}) &&
        model.dialect.fc_security == fc_security_t::feature)
        return spelled(spelled_t::fc_feature, "fc-port-security");
    return command[0] == "feature" ? std::string(command[1]) : "";
}

void set_feature(model_t &model, feature_t feature) {
    const auto known = std::find_if(model.features.begin(), model.features.end(),
                                    [&](const feature_t &f) { return f.name == feature.name; });
    if (known == model.features.end())
        model.features.push_back(std::move(feature));
    else
        *known = std::move(feature);
}

// ---- VLANs

enum class list_t { good, bad, zero };

// Reads a number of VLANs off the front of `list`; -1 when there is none.
long take_number(std::string_view &list) {
    constexpr size_t most_digits = 4;
    size_t digits = 0;
    long value = 0;
    while (digits < list.size() && list[digits] >= '0' && list[digits] <= '9')
        value = std::min(value * 10 + (list[digits++] - '0'), long{vlan_numbers});
    list.remove_prefix(digits);
    return digits > 0 && digits <= most_digits ? value : -1;
}

list_t read_list(std::string_view list, vlans_t &vlans) {
    constexpr long last_vlan = 4094;
    bool zero = false, good = true;
    while (true) {
        const bool left_out = list.empty() || list[0] == ',';
        const long low = take_number(list);
        long high = low;
        if (low >= 0 && list.starts_with('-')) {
            list.remove_prefix(1);
            high = take_number(list);
        }
        zero = zero || low == 0 || left_out;
        good = good && low > 0 && low <= high && high <= last_vlan;
        for (long vlan = low; good && vlan <= high; vlan++)
            vlans.set(static_cast<size_t>(vlan));
        if (list.empty())
            return zero ? list_t::zero : good ? list_t::good : list_t::bad;
        if (list[0] != ',')
            return list_t::bad;
        list.remove_prefix(1);
    }
}

bool is_number(char c) { return c >= '0' && c <= '9'; }

} // namespace

bool is_predefined(std::string_view class_name) {
    return class_name == classes::rest || class_name == classes::fcoe ||
           class_name == classes::multicast || class_name == classes::flood;
}

block_t &block_of(model_t &model, const std::string &key) { return model.blocks[key]; }

bool read_feature(model_t &model, const stanza_t &stanza, const words_t &header) {
    const std::span<const std::string_view> all(header);
    const bool off = header[0] == "no";
    const std::string name = feature_named(model, stanza.header, off ? all.subspan(1) : all);
    if (name.empty())
        return false;
    set_feature(model, {name, !off, stanza.header.number, stanza.header.text});
    read_body(model, stanza, "feature " + name);
    return true;
}

bool read_vlans(model_t &model, const stanza_t &stanza, const words_t &header) {
    if (header.size() < 2 || header[0] != "vlan" ||
        !(is_number(header[1][0]) || header[1][0] == ','))
        return false;
    vlan_stanza_t vlans = {{}, stanza.header.number, {}, {}};
    const list_t list = header.size() == 2 ? read_list(header[1], vlans.vlans) : list_t::bad;
    if (list != list_t::good) {
        model.misfits.push_back({list == list_t::zero ? misfit_t::vlan_zero : misfit_t::vlan_list,
                                 stanza.header.number, std::string(stanza.header.text)});
        return false;
    }
    for (const line_t &line : stanza.body) {
        const words_t words = split_words(line.text);
        if (words.size() == 1 && words[0] == "fcoe" && line.indent > 0)
            vlans.fcoe.push_back(line.number);
        else if (!read_attachment(model, stanza, line, words))
            vlans.other.push_back(line);
    }
    model.vlans.push_back(std::move(vlans));
    return true;
}

model_t::model_t(std::string_view text, std::string_view release_text, std::string_view from)
    : reading(text), release(read_release(release_text)),
      dialect(dialect_of(release, read_release(from))) {
    for (const stanza_t &stanza : reading.stanzas)
        read_stanza(*this, stanza);
}

const class_map_t *model_t::class_map(std::string_view type, std::string_view name) const {
    const auto found = std::find_if(class_maps.begin(), class_maps.end(), [&](const auto &map) {
        return map.type == type && map.name == name;
    });
    return found == class_maps.end() ? nullptr : &*found;
}

const policy_t *model_t::policy(std::string_view type, std::string_view name) const {
    const auto found = std::find_if(policies.begin(), policies.end(), [&](const auto &map) {
        return map.type == type && map.name == name;
    });
    return found == policies.end() ? nullptr : &*found;
}

const attachment_t *model_t::attached(std::string_view place, std::string_view type) const {
    const auto found =
        std::find_if(attachments.begin(), attachments.end(), [&](const attachment_t &attachment) {
            return attachment.place == place && attachment.type == type;
        });
    return found == attachments.end() ? nullptr : &*found;
}

} // namespace infraconvert::meaning
