// What the builders of the database share.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

// Reads the name of a map from the text at its keyword, with a pattern such as "class-map %s".
// Returns false, with a message, when there is no word or one that does not fit.
bool qoscnv_read_map_name(const char *pass, position keyword, const char *pattern,
                          std::string &name);

// The policy-map record `name`, made and appended when there is none. Null without memory.
policymap_elem_t *qoscnv_policymap_named(const char *pass, const std::string &name);

// Makes a class record and appends it to `pmap`. Null, with a message, without memory.
class_elem_t *qoscnv_append_class(const char *pass, policymap_elem_t &pmap,
                                  const std::string &name);

// Makes the record of the action line `line` and classifies it. The caller puts it into a class.
// Null, with a message, without memory.
actions_elem_t *qoscnv_new_classified_action(const char *pass, const std::string &line);
