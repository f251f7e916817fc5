// From untyped to typed text, in the order of the pipeline. Each pass works on the loaded text and
// the map database and returns 0, or -1 with a message; what it rewrote until then stays in the
// text, which is not saved after a failure.
#pragma once

#include "platform/platform.h"

#include <cstdint>

class policymap_headers_t;
struct policymap_elem_t;

// Marks the policy attached under "system qos" and numbers the qos-groups of its classes.
syserr_t qoscnv_assign_qosgrp_to_sysqos_policy();

// The qos-group of the class-map `cmap_name` in `qos_group`; 255 when it has none.
syserr_t qoscnv_classmap_to_qosgrp(const char *cmap_name, uint8_t *qos_group);

// "class-map c1" to "class-map type qos c1"; adds the special class-maps.
syserr_t qoscnv_add_type_qos_to_classmaps();

// "policy-map p1" to "policy-map type qos p1".
syserr_t qoscnv_add_type_qos_to_policymaps();

// Splits every policy-map into its type qos policy, in place, and new policy-maps of type queuing
// and network-qos, with the class-maps that these need.
syserr_t qoscnv_rewrite_maps();

// The middle of the above: make the existing policy-map a type qos policy. The first drops all
// actions of its classes; the second serves a policy without queuing or unified-fabric actions, and
// keeps them, but for those of the special classes.
syserr_t qoscnv_alter_existing_policymap(const policymap_elem_t &pmap,
                                         policymap_headers_t &headers);
syserr_t qoscnv_alter_existing_type_qos_policymap(const policymap_elem_t &pmap,
                                                  policymap_headers_t &headers);

// "service-policy input p1" to one line for each type that p1 has.
syserr_t qoscnv_rewrite_attachments();
