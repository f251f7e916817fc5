// Untyped class-maps to records:
//
//     class-map c1
//       match cos 2
//
// gives a class-map c1 of type qos with one match line.

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/builder.h"

using engine::nowhere;
using engine::position_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_build_classmaps_db"};
constexpr std::string_view keyword = "class-map";
constexpr std::string_view match_line_start = "  match";

uint8_t qos_group_of_name(std::string_view name) {
    if (name == class_fcoe)
        return qos_group_class_fcoe;
    return name == class_default ? qos_group_class_default : qos_group_unassigned;
}

// Appends the match line at `cp` to `map`. Returns false with a message.
bool add_match(classmap_elem_t &map, position_t cp) {
    const std::string line = qoscnv_linebuf(cp);
    if (!pass.body_line_fits(cp))
        return false;
    if (!line.starts_with(match_line_start)) {
        pass.log("Unexpected text: %s\n", line.c_str());
        return false;
    }
    pass.log("\tfound match: %s\n", line.c_str());
    list_elem_t *match = qoscnv_new_list_elem(pass, line + '\n');
    if (!match)
        return pass.no_memory_for("match");
    map.matches.append(match);
    return true;
}

// Reads the class-map whose keyword stands at `cp`, which moves behind its body. Returns false with
// a message.
bool build_classmap(position_t &cp) {
    pass.log("found class-map at byte %d\n", static_cast<int>(cp));
    std::string name;
    if (!qoscnv_read_map_name(pass, cp, "class-map %s", name))
        return false;
    pass.log("found class-map name %s\n", name.c_str());
    cp = qoscnv_line_after(cp);
    classmap_elem_t *map = qoscnv_new_classmap(pass, name);
    if (!map)
        return pass.no_memory_for("class-map");
    classmaps.append(map);
    if (qoscnv_nextstanza(cp)) // no body
        return true;
    map->qos_group = qos_group_of_name(name);
    for (; qoscnv_in_body(cp); cp = qoscnv_line_after(cp)) {
        if (!add_match(*map, cp))
            return false;
    }
    return true;
}

} // namespace

syserr_t qoscnv_build_classmaps_db() {
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find(keyword, cp)) != nowhere) {
        if (!build_classmap(cp))
            return engine::failure;
    }
    return 0;
}
