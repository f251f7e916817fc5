#include "secrets/word_shapes.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cassert>
#include <cctype>
#include <charconv>
#include <string>

namespace infraconvert {

namespace {

constexpr std::string_view digits = "0123456789", hex_digits = "0123456789abcdefABCDEF";

bool only(std::string_view word, std::string_view characters) {
    return !word.empty() && word.find_first_not_of(characters) == word.npos;
}

// True for groups of so many characters with one separator between them.
bool in_groups(std::string_view word, size_t groups, size_t length, char separator) {
    if (word.size() != groups * (length + 1) - 1)
        return false;
    for (size_t i = 0; i < word.size(); i++) {
        const bool between = i % (length + 1) == length;
        if (between ? word[i] != separator : hex_digits.find(word[i]) == hex_digits.npos)
            return false;
    }
    return true;
}

// The number of the word; -1 when it is none or lies above the limit.
long number_up_to(std::string_view word, long limit) {
    long number = -1;
    const char *end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    return only(word, digits) && error == std::errc() && stop == end && number <= limit ? number
                                                                                        : -1;
}

bool is_decimal(std::string_view word) { // 80.00
    const size_t point = std::min(word.find('.'), word.size());
    return number_up_to(word.substr(0, point), 99999) >= 0 &&
           (point == word.size() || number_up_to(word.substr(point + 1), 99999) >= 0);
}

bool is_address(std::string_view word) {
    const size_t slash = std::min(word.find('/'), word.size());
    if (slash < word.size() && number_up_to(word.substr(slash + 1), 128) < 0)
        return false;
    const std::string address(word.substr(0, slash));
    unsigned char bytes[sizeof(in6_addr)];
    return inet_pton(AF_INET, address.c_str(), bytes) == 1 ||
           inet_pton(AF_INET6, address.c_str(), bytes) == 1;
}

bool is_mac(std::string_view word) {
    return in_groups(word, 3, 4, '.') || in_groups(word, 6, 2, ':');
}

bool is_wwn(std::string_view word) { return in_groups(word, 8, 2, ':'); }

bool is_vlan(std::string_view word) { return number_up_to(word, 4095) >= 0; }

bool is_short_hex(std::string_view word) { // 0x640000
    return word.size() <= 8 && word.starts_with("0x") && only(word.substr(2), hex_digits);
}

bool is_slot(std::string_view word) { // 1/1 or 101/1/1
    constexpr size_t longest = 11;
    return word.size() <= longest && only(word, "0123456789/.-") && std::isdigit(word[0]);
}

// A name as people give it to hosts, lists and servers.
bool is_name(std::string_view word) {
    constexpr size_t longest = 63;
    return !word.empty() && word.size() <= longest &&
           std::isalpha(static_cast<unsigned char>(word[0])) &&
           std::all_of(word.begin(), word.end(), [](unsigned char c) {
               return std::isalnum(c) || c == '-' || c == '_' || c == '.';
           });
}

// Maps and VLANs have names of any bytes. What begins with a quote may have blanks in it, so that a
// word of it is not all.
bool is_map_name(std::string_view word) { return !word.empty() && word[0] != '"'; }

bool is_number_or_name(std::string_view word) { return is_vlan(word) || is_name(word); }

bool is_keyword(std::string_view word) { // of a map's type
    constexpr std::string_view types[] = {"qos", "queuing", "network-qos", "control-plane"};
    return std::find(std::begin(types), std::end(types), word) != std::end(types);
}

bool is_file(std::string_view word) { // bootflash:/image.bin, but nothing with a host in it
    return !word.empty() && word.find_first_of("@?=&%\"'") == word.npos &&
           word.find("//") == word.npos;
}

bool is_code_point(std::string_view word) {
    constexpr std::string_view names[] = {
        "default",   "ef",       "critical", "flash",    "flash-override",
        "immediate", "internet", "network",  "priority", "routine",
        "cs1",       "cs2",      "cs3",      "cs4",      "cs5",
        "cs6",       "cs7",      "af11",     "af12",     "af13",
        "af21",      "af22",     "af23",     "af31",     "af32",
        "af33",      "af41",     "af42",     "af43"};
    return std::find(std::begin(names), std::end(names), word) != std::end(names) ||
           (word.size() <= 5 && only(word, "0123456789-"));
}

bool is_list_of_code_points(std::string_view word) { // af21,af22 or 46 or 8-10
    size_t comma;
    while ((comma = word.find(',')) != word.npos) {
        if (!is_code_point(word.substr(0, comma)))
            return false;
        word.remove_prefix(comma + 1);
    }
    return is_code_point(word);
}

bool is_unit(std::string_view word) {
    constexpr std::string_view units[] = {
        "bps", "kbps", "mbps",    "gbps",  "pps",  "percent", "bytes", "kbytes",  "mbytes",
        "ms",  "us",   "packets", "cells", "msec", "sec",     "ns",    "seconds", "kilobits"};
    return std::find(std::begin(units), std::end(units), word) != std::end(units);
}

bool is_protocol(std::string_view word) {
    constexpr std::string_view names[] = {"ip",   "ipv6", "tcp",   "udp", "icmp", "igmp", "gre",
                                          "ospf", "pim",  "eigrp", "ahp", "esp",  "nos",  "pcp"};
    return std::find(std::begin(names), std::end(names), word) != std::end(names) ||
           number_up_to(word, 255) >= 0;
}

bool is_port(std::string_view word) {
    constexpr std::string_view names[] = {
        "www",      "ftp",  "ftp-data", "telnet", "smtp",   "domain",  "tacacs",
        "bgp",      "ntp",  "snmp",     "syslog", "tftp",   "bootpc",  "bootps",
        "snmptrap", "pop3", "sunrpc",   "ssh",    "radius", "isakmp",  "netbios-ns",
        "rip",      "nntp", "whois",    "time",   "who",    "discard", "netbios-dgm"};
    return std::find(std::begin(names), std::end(names), word) != std::end(names) ||
           number_up_to(word, 65535) >= 0;
}

// Takes one to `most` of these characters off the front of the text; false when there is none.
bool skip(std::string_view &text, std::string_view characters, size_t most) {
    const size_t count = std::min(text.find_first_not_of(characters), text.size());
    if (count == 0 || count > most)
        return false;
    text.remove_prefix(count);
    return true;
}

// The (3) or (1a) of a release.
bool skip_in_brackets(std::string_view &text) {
    if (!skip(text, "(", 1) || !skip(text, digits, 4))
        return false;
    skip(text, "abcdefghijklmnopqrstuvwxyz", 2);
    return skip(text, ")", 1);
}

bool is_netmask(std::string_view word) {
    in_addr mask = {};
    if (inet_pton(AF_INET, std::string(word).c_str(), &mask) != 1)
        return false;
    const uint32_t host = ~ntohl(mask.s_addr);
    return (host & (host + 1)) == 0;
}

struct shape_row_t {
    std::string_view name;
    word_shape_t shape;
};

constexpr shape_row_t shapes[] = {
    {"number", is_number},
    {"decimal", is_decimal},
    {"vlan", is_vlan},
    {"list", is_number_list},
    {"hex", is_short_hex},
    {"address", is_address},
    {"mac", is_mac},
    {"wwn", is_wwn},
    {"interface", is_interface},
    {"slot", is_slot},
    {"name", is_name},
    {"map", is_map_name},
    {"id", is_number_or_name},
    {"type", is_keyword},
    {"file", is_file},
    {"points", is_list_of_code_points},
    {"unit", is_unit},
    {"protocol", is_protocol},
    {"port", is_port},
    {"release", is_release_number},
    {"netmask", is_netmask},
};

} // namespace

word_shape_t word_shape_named(std::string_view name) {
    const auto row = std::find_if(std::begin(shapes), std::end(shapes),
                                  [&](const shape_row_t &r) { return r.name == name; });
    assert(row != std::end(shapes));
    return row->shape;
}

bool is_number(std::string_view word) { return word.size() <= 10 && only(word, digits); }

bool is_number_list(std::string_view word) {
    constexpr size_t longest_number = 5;
    size_t length = 0;
    for (const char c : word) {
        length = c == ',' || c == '-' ? 0 : length + 1;
        if (length > longest_number)
            return false;
    }
    return only(word, "0123456789,-");
}

bool is_interface(std::string_view word) {
    constexpr std::string_view kinds[] = {
        "Ethernet", "ethernet", "port-channel", "Vlan",      "vlan",   "loopback",
        "mgmt",     "vfc",      "fc",           "tunnel",    "Tunnel", "san-port-channel",
        "Eth",      "Po",       "Lo",           "vethernet", "fcip",   "Null",
        "nve",      "Vethernet"};
    return std::any_of(std::begin(kinds), std::end(kinds), [&](std::string_view kind) {
        return word.starts_with(kind) && is_slot(word.substr(std::min(kind.size(), word.size())));
    });
}

bool is_release_number(std::string_view word) {
    constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const bool numbers = skip(word, digits, 4) && skip(word, ".", 1) && skip(word, digits, 4) &&
                         skip_in_brackets(word);
    return numbers && (word.empty() || (skip(word, capitals, 1) && skip(word, digits, 4) &&
                                        skip_in_brackets(word) && word.empty()));
}

} // namespace infraconvert
