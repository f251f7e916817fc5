// The records of the QoS maps: what frees them, and the type that an action asks for.

#include "converters/qos_log.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

#include <gtest/gtest.h>
#include <unordered_map>

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

    std::string expected;
    for (int i = 0; i < 6; i++)
        expected += "qoscnv_db_teardown(): Freeing block of memory at <ptr>\n";
    EXPECT_EQ(qos_log_of(qoscnv_db_teardown), expected);
    EXPECT_TRUE(classmaps.empty() && policymaps.empty());
}

// Names are looked for by a hash of 32 bits, which two names share soon.
TEST(map_database, names_of_one_hash_are_two_names) {
    std::unordered_map<uint32_t, std::string> names;
    std::string other;
    const auto is_new = [&](const std::string &name) {
        const auto hash = static_cast<uint32_t>(std::hash<std::string_view>{}(name));
        return names.emplace(hash, name).second;
    };
    for (int i = 0; i < 10'000'000 && other.empty(); i++) {
        if (const std::string name = "c" + std::to_string(i); !is_new(name))
            other = name;
    }
    ASSERT_NE(other, "");
    const std::string &one = names.at(static_cast<uint32_t>(std::hash<std::string_view>{}(other)));
    qoscnv_db_init();
    classmaps.append(qoscnv_new_classmap({"test"}, one));
    EXPECT_EQ(qoscnv_find_classmap(other), nullptr);
    classmaps.append(qoscnv_new_classmap({"test"}, other));
    EXPECT_EQ(qoscnv_find_classmap(one)->name, one);
    EXPECT_EQ(qoscnv_find_classmap(other)->name, other);
    qoscnv_db_init();
}

TEST(map_database, the_first_keyword_decides_the_type_of_an_action) {
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    bandwidth set qos-group"), QOSCNV_TYPE_QOS);
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    priority mtu 1500"), QOSCNV_TYPE_UF);
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    bandwidth percent 5"), QOSCNV_TYPE_QUEUING);
    EXPECT_EQ(qoscnv_convert_action_to_pmap_type("    police"), QOSCNV_TYPE_NONE);
}
