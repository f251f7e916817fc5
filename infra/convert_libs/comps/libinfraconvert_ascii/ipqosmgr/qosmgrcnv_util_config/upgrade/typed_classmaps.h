// Class-maps of type queuing and network-qos, and where new stanzas of a kind go.
#pragma once

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

#include <string>
#include <string_view>

// The last headers of the typed stanzas of a kind, and the word for it in the log. A header that
// begins with a newline stands at line starts only.
struct last_headers_t {
    last_headers_t(const char *kind_word, const std::string &header);

    const char *const kind;
    engine::last_hits_t by_type;
};

// Positions behind the last stanza of each type; nowhere for a type that has none, or when no
// stanza follows.
struct stanza_ends_t {
    engine::position_t qos, queuing, unified_fabric;

    // Where new stanzas of `type` go; nowhere without any stanza to go behind.
    engine::position_t insertion_point(uint8_t type) const;
};

// Finds the ends of the stanzas for the pass `pass`.
stanza_ends_t qoscnv_find_stanza_ends(const qoscnv_pass_t &pass, last_headers_t &headers);

// Writes a class-map of `type` for each class of `pmap` that has none yet, behind those of
// `headers`. Adds a class of type network-qos to the policy's list for each class that has no
// actions of that type. Returns 0 or -1.
syserr_t qoscnv_create_qosgrp_classmap(policymap_elem_t &pmap, uint8_t type,
                                       last_headers_t &headers);
