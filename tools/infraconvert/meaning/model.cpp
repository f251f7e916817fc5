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
    return words.size() > 1 &&
           (words[0] == "class-map" || words[0] == "policy-map" ||
            begins_with(words, {"system", "qos"}) || begins_with(words, {"npiv", "enable"}));
}

// A blank that only looks like one, as texts from web pages and office programs have it, or the
// mark that some editors put at the start of a file.
bool holds_odd_blank(std::string_view text) {
    constexpr std::string_view no_break_space = "\xc2\xa0", byte_order_mark = "\xef\xbb\xbf";
    return text.find(no_break_space) != text.npos || text.find(byte_order_mark) != text.npos;
}

// Lines that take something back, of which a saved configuration has none: it says what is.
bool takes_back(const words_t &words) {
    constexpr std::string_view of_maps[] = {"class-map", "policy-map", "service-policy"};
    return words.size() > 1 && words[0] == "no" &&
           std::find(std::begin(of_maps), std::end(of_maps), words[1]) != std::end(of_maps);
}

void check_line(model_t &model, const line_t &line, const words_t &words, bool at_the_start) {
    const bool stray = at_the_start ? belongs_below(words[0]) : belongs_at_the_start(words);
    const misfit_t::kind_t kind = stray               ? misfit_t::stray_line
                                  : takes_back(words) ? misfit_t::taken_back
                                                      : misfit_t::odd_blank;
    if (kind != misfit_t::odd_blank || holds_odd_blank(line.text))
        model.misfits.push_back({kind, line.number, std::string(line.text)});
}

bool is_of_interface(const stanza_t &stanza) {
    return !stanza.header.text.empty() &&
           is_interface(full_words(stanza.header.text, position_t::first_line));
}

void read_body(model_t &model, const stanza_t &stanza, const std::string &key) {
    block_t *block = nullptr;
    for (const line_t &line : stanza.body) {
        const words_t words = full_words(line.text, position_t::body);
        if (read_attachment(model, stanza, line, words))
            continue;
        block = block ? block : &block_of(model, key);
        if (is_fabric_line(words) && line.indent > 0 && is_of_interface(stanza))
            block->fabric.push_back({joined(words), line.number});
        else
            block->lines.push_back(line);
        check_line(model, line, words, false);
    }
}

void read_stanza(model_t &model, const stanza_t &stanza) {
    if (stanza.header.text.empty())
        return read_body(model, stanza, "");
    const words_t header = full_words(stanza.header.text, position_t::first_line);
    if (is_map(header))
        return read_map(model, stanza, header);
    if (read_feature(model, stanza, header) || read_vlans(model, stanza, header))
        return;
    const std::string key = key_of(model, stanza.header, header);
    block_t &block = block_of(model, key);
    if (block.headers.empty())
        block.header = stanza.header.text;
    block.headers.push_back(stanza.header.number);
    check_line(model, stanza.header, header, true);
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
    model.features[name] = {!off, stanza.header.number};
    read_body(model, stanza, "feature " + name);
    return true;
}

model_t::model_t(std::string_view text, std::string_view release_text, std::string_view from)
    : reading(text), release(read_release(release_text)),
      dialect(dialect_of(release, read_release(from))) {
    for (const stanza_t &stanza : reading.stanzas)
        read_stanza(*this, stanza);
    for (uint32_t i = 0; i < attachments.size(); i++) {
        first_attachments.try_emplace(place_key(attachments[i].place, attachments[i].type), i);
        if (const policy_t *policy = policy_of(attachments[i]))
            attached_policies.insert(policy);
    }
}

namespace {

// The map of this type among those of its name.
template<typename map_t>
const map_t *of_type(const std::vector<map_t> &maps, std::span<const uint32_t> named,
                     std::string_view type) {
    for (const uint32_t each : named) {
        if (maps[each].type == type)
            return &maps[each];
    }
    return nullptr;
}

} // namespace

const class_map_t *model_t::class_map(std::string_view type, std::string_view name) const {
    return of_type(class_maps, class_map_names.of(name), type);
}

const policy_t *model_t::policy(std::string_view type, std::string_view name) const {
    return of_type(policies, policy_names.of(name), type);
}

const policy_t *model_t::policy_of(const attachment_t &attachment) const {
    const bool plane = attachment.kind == place_kind_t::control_plane;
    return policy(plane ? types::control_plane : attachment.type, attachment.name);
}

const attachment_t *model_t::attached(std::string_view place, std::string_view type) const {
    const auto found = first_attachments.find(place_key(place, type));
    return found == first_attachments.end() ? nullptr : &attachments[found->second];
}

std::span<const uint32_t> names_index_t::of(std::string_view name) const {
    const auto found = by_name.find(name);
    return found == by_name.end() ? std::span<const uint32_t>() : found->second;
}

} // namespace infraconvert::meaning
