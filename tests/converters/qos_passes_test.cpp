// QoS passes on records that the builders do not make.

#include "converters/qos_log.h"
#include "engine/loaded.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/typed_policymap.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/typed_classmaps.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

namespace {

// A policy-map with one class of the type, in an otherwise empty database.
policymap_elem_t &policy_with(const char *class_name, uint8_t type) {
    qoscnv_db_init();
    policymap_elem_t *pmap = qoscnv_new_policymap({"test"}, "p");
    class_elem_t *cls = qoscnv_new_class({"test"}, class_name);
    cls->type = pmap->type = type;
    pmap->classes.append(cls);
    policymaps.append(pmap);
    return *pmap;
}

} // namespace

TEST(qos_passes, a_special_class_gets_its_record_with_its_typed_class_map) {
    struct {
        const char *class_name;
        uint8_t type;
        const char *before, *after;
    } const rows[] = {
        {"class-all-flood", QOSCNV_TYPE_QUEUING,
         "\nclass-map type qos a\nclass-map type qos b\nend\n",
         "\nclass-map type qos a\nclass-map type qos b\nclass-map type qos class-all-flood\n"
         "class-map type queuing class-all-flood\n\nend\n"},
        // No stanza of type qos to go behind.
        {"class-ip-multicast", QOSCNV_TYPE_UF,
         "\nclass-map type x a\nclass-map type queuing b\nend\n",
         "\nclass-map type x a\nclass-map type queuing b\nclass-map type qos class-ip-multicast\n"
         "class-map type network-qos class-ip-multicast\n\nend\n"},
        // Typed text of before is where new class-maps of type network-qos go.
        {"class-ip-multicast", QOSCNV_TYPE_UF,
         "\nclass-map type qos a\nclass-map type unified-fabric b\nend\nend\n",
         "\nclass-map type qos a\nclass-map type unified-fabric b\n"
         "class-map type qos class-ip-multicast\n"
         "class-map type network-qos class-ip-multicast\n\nend\nend\n"},
    };
    for (const auto &row : rows) {
        load(qoscnv_engine, row.before);
        policymap_elem_t &pmap = policy_with(row.class_name, row.type);
        last_headers_t headers{"class-map", "\nclass-map"};
        EXPECT_EQ(qoscnv_create_qosgrp_classmap(pmap, row.type, headers), 0u);
        EXPECT_EQ(text_of(qoscnv_engine), row.after);
        EXPECT_EQ(qoscnv_find_classmap(row.class_name)->qos_group, qos_group_unassigned);
    }
}

TEST(qos_passes, only_two_types_have_maps_of_their_own) {
    load(qoscnv_engine, "\nclass-map type qos a\nclass-map type qos b\nend\n");
    policymap_elem_t &pmap = policy_with("a", QOSCNV_TYPE_QOS);
    last_headers_t headers{"class-map", "\nclass-map"};
    EXPECT_EQ(
        qos_log_of([&] {
            EXPECT_EQ(qoscnv_create_qosgrp_classmap(pmap, QOSCNV_TYPE_QOS, headers),
                      engine::failure);
        }),
        "qoscnv_create_qosgrp_classmap(): Creating new class-maps of type 1 for policy-map p\n"
        "qoscnv_create_qosgrp_classmap(): Unexpected type 1\n");
    EXPECT_EQ(
        qos_log_of([&] {
            EXPECT_FALSE(qoscnv_begin_typed_policymap(
                {.pass = {"test"}, .type = QOSCNV_TYPE_QOS, .upgrade = true, .trace_mtu = nullptr},
                pmap));
        }),
        "test(): Creating new policy-maps of type 1 for policy-map p\n"
        "test(): Unexpected type 1\n");
}

TEST(qos_passes, the_group_of_a_class_map_needs_a_place) {
    uint8_t group = qos_group_unassigned;
    EXPECT_EQ(qoscnv_classmap_to_qosgrp("class-default", &group), 0u);
    EXPECT_EQ(group, 0);
    EXPECT_EQ(qoscnv_classmap_to_qosgrp("class-fcoe", &group), 0u);
    EXPECT_EQ(group, 1);
    EXPECT_EQ(qos_log_of([] {
                  EXPECT_EQ(qoscnv_classmap_to_qosgrp("class-fcoe", nullptr), engine::failure);
              }),
              "qoscnv_classmap_to_qosgrp(): qos-group argument invalid; aborting\n");
}
