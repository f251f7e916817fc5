// "class-map c1" to "class-map type qos c1" and "policy-map p1" to "policy-map type qos p1", and a
// stanza at the top of the QoS section for each special class that a policy uses.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

using engine::length;
using engine::nowhere;
using engine::position_t;

namespace {

constexpr qoscnv_pass_t classmap_pass{"qoscnv_add_type_qos_to_classmaps"};

// Inserts "type qos " behind each `keyword` at a line start, and its blank. Returns false after a
// refused insertion.
bool mark(const qoscnv_pass_t &pass, std::string_view keyword) {
    constexpr uint32_t blank_length = 1;
    const std::string line_start = '\n' + std::string(keyword);
    position_t found = qoscnv_file_start_qossection();
    while ((found = qoscnv_find(line_start, found)) != nowhere) {
        pass.log("found %s at byte %d\n", keyword.data(), static_cast<int>(found));
        found += length(line_start) + blank_length;
        if (!qoscnv_insert_text(found, std::string(type_qos) + ' '))
            return false;
    }
    return true;
}

} // namespace

syserr_t qoscnv_add_type_qos_to_classmaps() {
    if (!mark(classmap_pass, "class-map"))
        return engine::failure;
    const position_t section = qoscnv_file_start_qossection();
    if (section == nowhere)
        return 0;
    position_t top = section + newline_length;
    for (const auto *map = classmaps.first; map; map = map->next) {
        if (!qoscnv_is_special_class(map->name))
            continue;
        classmap_pass.log("Found special class %s\n", map->name);
        if (!classmap_pass.write(top, std::string("class-map type qos ") + map->name + '\n'))
            return engine::failure;
    }
    return 0;
}

syserr_t qoscnv_add_type_qos_to_policymaps() {
    return mark({"qoscnv_add_type_qos_to_policymaps"}, "policy-map") ? 0 : engine::failure;
}
