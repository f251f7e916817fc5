// From typed to untyped text, in the order of the pipeline. Each pass works on the loaded text and
// the map database and returns 0, or -1 with a message; what it rewrote until then stays in the
// text, which is not saved after a failure.
#pragma once

#include "platform/platform.h"

// Removes the description that is the first body line of a class-map or policy-map.
syserr_t qoscnv_remove_description();

// From 5.0(2) or later to 4.1(3): takes "match-any" out of type qos class-maps and writes the two
// special class-maps.
syserr_t qoscnv_remove_match_any();

// Note the class-maps to keep, and the policy-maps without a body, in the database.
syserr_t qoscnv_identify_empty_classmaps();
syserr_t qoscnv_identify_empty_policymaps();

// Removes the lines "  service-policy type qos ...".
syserr_t qoscnv_delete_type_qos_attachments();

// Remove the type words and the qos-group lines.
syserr_t qoscnv_remove_type_qos();
syserr_t qoscnv_remove_type_queuing();
syserr_t qoscnv_remove_type_nq();
syserr_t qoscnv_remove_qos_groups();

// Removes class-maps without a body that are not to be kept.
syserr_t qoscnv_remove_empty_classmaps();

// Deletes all policy-maps, and writes one untyped policy-map for each name of the database in their
// place.
syserr_t qoscnv_replace_policymaps();

// Leaves one attachment under "system qos", and one for each direction under an interface.
syserr_t qoscnv_delete_duplicate_attachments();

// From 5.0(3) U2 to U1: removes the control-plane lines.
syserr_t qosmgr_convert_ascii_5_0_3_downgrade();
