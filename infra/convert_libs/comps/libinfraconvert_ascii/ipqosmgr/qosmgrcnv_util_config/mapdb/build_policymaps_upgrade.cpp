// Untyped policy-maps to records, each class split by the types of its actions:
//
//     policy-map p1
//       class c1
//         bandwidth percent 20
//         pause no-drop
//
// gives a policy-map p1 of types queuing and unified-fabric with two classes c1, one of each type.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/builder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char *pass = "qoscnv_build_policymaps_db_upgrade";
constexpr std::string_view keyword = "policy-map";
constexpr const char *class_pattern = "  class %s\n";

// Predefined classes that some policy-map uses.
struct special_classes_t {
    bool ip_multicast = false;
    bool all_flood = false;
};

// The class record that takes an action of that type: the first of the name that has the type, or
// none yet. Made where there is none. Null, with a message, without memory.
class_elem_t *class_for_type(policymap_elem_t &pmap, const std::string &name, uint8_t type) {
    for (class_elem_t *cls = pmap.classes.first; cls; cls = cls->next) {
        if (name == cls->name && (cls->type == QOSCNV_TYPE_NONE || cls->type == type)) {
            cls->type = type;
            return cls;
        }
    }
    class_elem_t *cls = qoscnv_append_class(pass, pmap, name);
    if (cls)
        cls->type = type;
    return cls;
}

bool add_action(policymap_elem_t &pmap, const std::string &class_name, const std::string &line) {
    actions_elem_t *action = qoscnv_new_classified_action(pass, line);
    if (!action)
        return false;
    pmap.type |= action->type;
    class_elem_t *cls = class_for_type(pmap, class_name, action->type);
    if (!cls) {
        free(action);
        return false;
    }
    cls->class_actions.append(action);
    return true;
}

// Reads the actions at `cp`, which moves to the next class or behind the body.
bool build_actions(policymap_elem_t &pmap, const std::string &class_name, position &cp) {
    for (; qoscnv_in_body(cp); cp = qoscnv_line_after(cp)) {
        const std::string line = qoscnv_linebuf(cp);
        if (line.empty())
            continue;
        if (!qoscnv_body_line_fits(pass, cp))
            return false;
        if (scan_words(line, class_pattern).count == 1) {
            engine::log(qoscnv_engine, pass, "hit next class\n");
            return true;
        }
        if (!add_action(pmap, class_name, line))
            return false;
    }
    return true;
}

// Reads the class at `cp`, which moves behind its actions.
bool build_class(policymap_elem_t &pmap, special_classes_t &special, position &cp) {
    const std::string line = qoscnv_linebuf(cp);
    if (!qoscnv_body_line_fits(pass, cp))
        return false;
    if (!qoscnv_is_class_line(line)) {
        engine::log(qoscnv_engine, pass, "Unexpected text: %s\n", line.c_str());
        return false;
    }
    engine::log(qoscnv_engine, pass, "\tfound class: %s\n", line.c_str());
    const words_t words = scan_words(line, class_pattern);
    if (words.count == 0) {
        engine::log(qoscnv_engine, pass, "unexpected class format; aborting\n");
        return false;
    }
    const std::string &name = words.word[0];
    special.ip_multicast |= name == class_ip_multicast;
    special.all_flood |= name == class_all_flood;
    if (!qoscnv_lookup(pmap.classes, name) && !qoscnv_append_class(pass, pmap, name))
        return false;
    cp = qoscnv_line_after(cp);
    return build_actions(pmap, name, cp);
}

// Reads the policy-map whose keyword stands at `cp`, which moves behind its body.
bool build_policymap(special_classes_t &special, position &cp) {
    engine::log(qoscnv_engine, pass, "found policy-map at byte %d\n", static_cast<int>(cp));
    std::string name;
    if (!qoscnv_read_map_name(pass, cp, "policy-map %s", name))
        return false;
    engine::log(qoscnv_engine, pass, "found policy-map name %s\n", name.c_str());
    cp = qoscnv_line_after(cp);
    if (qoscnv_nextstanza(cp)) // without a body it is not recorded
        return true;
    policymap_elem_t *pmap = qoscnv_policymap_named(pass, name);
    if (!pmap)
        return false;
    while (qoscnv_in_body(cp)) {
        if (!build_class(*pmap, special, cp))
            return false;
    }
    return true;
}

bool append_classmap(std::string_view name) {
    classmap_elem_t *map = qoscnv_new_classmap(pass, name);
    if (map)
        classmaps.append(map);
    else
        engine::log(qoscnv_engine, pass, "could not allocate memory for class-map: %s\n",
                    strerror(errno));
    return map;
}

} // namespace

syserr_t qoscnv_build_policymaps_db_upgrade() {
    special_classes_t special;
    position cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find(keyword, cp)) != nowhere) {
        if (!build_policymap(special, cp))
            return engine::failure;
    }
    if (special.ip_multicast && !append_classmap(class_ip_multicast))
        return engine::failure;
    if (special.all_flood && !append_classmap(class_all_flood))
        return engine::failure;
    qoscnv_db_print_classmaps();
    return 0;
}
