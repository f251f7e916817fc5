// VLANs: "vlan 10-12,20", with "fcoe" and other lines below it.

#include "meaning/model.h"

#include <algorithm>

namespace infraconvert::meaning {

namespace {

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

void read_body(const stanza_t &stanza, vlan_stanza_t &vlans) {
    for (const line_t &line : stanza.body) {
        const words_t words = full_words(line.text, position_t::body);
        const bool off = words.size() == 2 && words[0] == "no" && words[1] == "fcoe";
        if (words.size() == 1 && words[0] == "fcoe" && line.indent > 0) {
            vlans.fcoe.push_back(line.number);
            vlans.has_fcoe = true;
        } else {
            vlans.other.push_back(line);
            vlans.loses_fcoe = vlans.loses_fcoe || off;
            vlans.has_fcoe = vlans.has_fcoe && !off;
        }
    }
}

} // namespace

bool read_vlans(model_t &model, const stanza_t &stanza, const words_t &header) {
    if (header.size() < 2 || header[0] != "vlan" ||
        !(is_number(header[1][0]) || header[1][0] == ','))
        return false;
    vlan_stanza_t vlans = {.vlans = {}, .line = stanza.header.number, .fcoe = {}, .other = {}};
    const list_t list = header.size() == 2 ? read_list(header[1], vlans.vlans) : list_t::bad;
    if (list != list_t::good) {
        model.misfits.push_back({list == list_t::zero ? misfit_t::vlan_zero : misfit_t::vlan_list,
                                 stanza.header.number, std::string(stanza.header.text)});
        return false;
    }
    read_body(stanza, vlans);
    model.vlans.push_back(std::move(vlans));
    return true;
}

vlans_t all_vlans(const model_t &model) {
    vlans_t all;
    for (const vlan_stanza_t &stanza : model.vlans)
        all |= stanza.vlans;
    return all;
}

// "no fcoe" takes back what stands in front of it, also in another stanza of the VLAN.
vlans_t fcoe_vlans(const model_t &model) {
    vlans_t all;
    for (const vlan_stanza_t &stanza : model.vlans) {
        if (stanza.loses_fcoe)
            all &= ~stanza.vlans;
        if (stanza.has_fcoe)
            all |= stanza.vlans;
    }
    return all;
}

} // namespace infraconvert::meaning
