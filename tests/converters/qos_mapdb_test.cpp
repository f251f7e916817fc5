// The records of the QoS maps: what frees them, and the type that an action asks for.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "support/converter_process.h"

#include "include/libinfraconvertascii.h"

#include <gtest/gtest.h>
#include <utility>

TEST(map_database, teardown_frees_what_a_record_holds_first) {
    auto *map = qoscnv_new_classmap({"test"}, "c1");
    classmaps.append(map);
    map->matches.append(qoscnv_new_list_elem({"test"}, "  match cos 1\n"));
    map->matches.append(qoscnv_new_list_elem({"test"}, "  match cos 2\n"));
    auto *pmap = qoscnv_new_policymap({"test"}, "p1");
    policymaps.append(pmap);
    auto *cls = qoscnv_new_class({"test"}, "c1");
    pmap->classes.append(cls);
    cls->class_actions.append(qoscnv_new_action({"test"}, "    priority\n"));

    const support::temporary_directory_t place;
    const std::string log = place.path() + "/log";
    err_fp = fopen(log.c_str(), "w");
    qosmgrcnv_debug = 1;
    qoscnv_db_teardown();
    qosmgrcnv_debug = 0;
    fclose(std::exchange(err_fp, nullptr));
    std::string expected;
    for (int i = 0; i < 6; i++)
        expected += "qoscnv_db_teardown(): Freeing block of memory at <ptr>\n";
    EXPECT_EQ(support::without_addresses(support::read_file(log)), expected);
    EXPECT_TRUE(classmaps.empty() && policymaps.empty());
}

TEST(map_database, the_first_keyword_decides_the_type_of_an_action) {
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    bandwidth set qos-group"), QOSCNV_TYPE_QOS);
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    priority mtu 1500"), QOSCNV_TYPE_UF);
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    bandwidth percent 5"), QOSCNV_TYPE_QUEUING);
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    police"), QOSCNV_TYPE_NONE);
}
