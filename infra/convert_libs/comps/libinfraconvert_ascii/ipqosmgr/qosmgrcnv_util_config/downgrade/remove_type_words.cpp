// The type words and the qos-group lines go:
//
//     class-map type queuing c1        class-map c1
//       match qos-group 2
//     policy-map type qos p1           policy-map p1
//       class c1                         class c1
//         set qos-group 2

#include "ipqosmgr/qosmgrcnv_engine.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"

#include <span>

using engine::length;

namespace {

// A text that is removed wherever it stands, with so many bytes in front of it and behind it.
struct removal_t {
    const char *text;
    uint32_t before;
    uint32_t after;
};

// Minus one byte in front: the removal begins behind the text's own newline.
constexpr uint32_t without_newline = -newline_length;
constexpr uint32_t group_length = length(" 2\n");

constexpr removal_t qos_words[] = {{" type qos", 0, 0}};
constexpr removal_t queuing_words[] = {{" type queuing", 0, 0}};
constexpr removal_t network_qos_words[] = {{" type network-qos", 0, 0}};
constexpr removal_t qos_groups[] = {
    {"set qos-group", length("    "), group_length},
    {"  match qos-group", 0, group_length},
    {"\nmatch qos-group", without_newline, group_length},
};

syserr_t remove_all(std::span<const removal_t> removals) {
    for (const removal_t &removal : removals)
        qoscnv_remove_regexp(removal.text, removal.before, removal.after);
    return 0;
}

} // namespace

syserr_t qoscnv_remove_type_qos() { return remove_all(qos_words); }
syserr_t qoscnv_remove_type_queuing() { return remove_all(queuing_words); }
syserr_t qoscnv_remove_type_nq() { return remove_all(network_qos_words); }
syserr_t qoscnv_remove_qos_groups() { return remove_all(qos_groups); }
