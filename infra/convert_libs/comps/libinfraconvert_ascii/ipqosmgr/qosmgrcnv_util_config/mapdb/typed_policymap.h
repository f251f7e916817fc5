// Writing the policy-map of one type from its record:
//
//     policy-map type network-qos p1
//       class type network-qos c1
//         mtu 2158
//
// Two passes do so, from untyped text and from typed text; they log under their own names and word
// the trace of an MTU value differently.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

struct typed_policymap_writer_t {
    qoscnv_pass_t pass;
    uint8_t type;                              // QOSCNV_TYPE_QUEUING or QOSCNV_TYPE_UF
    bool upgrade;                              // lowers MTU values; else raises them
    void (*trace_mtu)(const char *behind_mtu); // before a value is converted
};

// Logs the entry of the pass. Returns false, with a message, for a type that has no policy-maps.
bool qoscnv_begin_typed_policymap(const typed_policymap_writer_t &writer,
                                  const policymap_elem_t &pmap);

// Writes the classes and actions of `pmap` that have the type at `at`, under a header. Moves the
// special classes of exactly that type to the head of the record's list, for good. Returns 0 or -1.
syserr_t qoscnv_write_typed_policymap(const typed_policymap_writer_t &writer,
                                      policymap_elem_t &pmap, engine::position_t at);
