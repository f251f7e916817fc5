// The walk through policy-maps, classes and actions that both forms have in common.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/builder.h"

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"

#include <cstdlib>

using engine::position_t;
using engine::scan_words;
using engine::words_t;

bool qoscnv_read_map_name(const qoscnv_pass_t &pass, position_t keyword, const char *pattern,
                          std::string &name) {
    const words_t words = scan_words(*qoscnv_engine.text, keyword, pattern);
    if (!pass.fits(words))
        return false;
    if (words.count == 0) {
        pass.log("Unexpected text: %s\n", qoscnv_linebuf(keyword).c_str());
        return false;
    }
    name = words.word[0];
    return true;
}

namespace {

// The policy-map record `name`, made and appended when there is none. Null without memory.
policymap_elem_t *policymap_named(const qoscnv_pass_t &pass, const std::string &name) {
    policymap_elem_t *pmap = qoscnv_find_policymap(name);
    if (pmap)
        return pmap;
    pmap = qoscnv_new_policymap(pass, name);
    if (pmap)
        policymaps.append(pmap);
    return pmap;
}

} // namespace

class_elem_t *policymap_builder_t::append_class(policymap_elem_t &pmap,
                                                std::string_view name) const {
    class_elem_t *cls = qoscnv_new_class(pass, name);
    if (cls)
        pmap.classes.append(cls);
    else
        pass.no_memory_for("class");
    return cls;
}

bool policymap_builder_t::build(position_t &cp) {
    pass.log("found policy-map at byte %d\n", static_cast<int>(cp));
    std::string name;
    if (!read_map_name(cp, name))
        return false;
    pass.log("found policy-map name %s\n", name.c_str());
    cp = qoscnv_line_after(cp);
    if (qoscnv_nextstanza(cp)) // without a body it is not recorded
        return true;
    policymap_elem_t *pmap = policymap_named(pass, name);
    if (!pmap)
        return false;
    while (qoscnv_in_body(cp)) {
        if (!build_class(*pmap, cp))
            return false;
    }
    return true;
}

// Reads the class at `cp`, which moves behind its actions.
bool policymap_builder_t::build_class(policymap_elem_t &pmap, position_t &cp) {
    const std::string line = qoscnv_linebuf(cp);
    if (!pass.body_line_fits(cp))
        return false;
    if (!qoscnv_is_class_line(line)) {
        pass.log("Unexpected text: %s\n", line.c_str());
        return false;
    }
    pass.log("\tfound class: %s\n", line.c_str());
    std::string name;
    if (!read_class_name(line, name))
        return false;
    class_elem_t *cls = class_finder.first(pmap, name, [](const class_elem_t &) { return true; });
    if (!cls)
        cls = append_class(pmap, name);
    if (!cls)
        return false;
    cp = qoscnv_line_after(cp);
    return build_actions(pmap, *cls, cp);
}

// Reads the actions at `cp`, which moves to the next class or behind the body.
bool policymap_builder_t::build_actions(policymap_elem_t &pmap, class_elem_t &cls, position_t &cp) {
    for (; qoscnv_in_body(cp); cp = qoscnv_line_after(cp)) {
        const std::string line = qoscnv_linebuf(cp);
        if (line.empty())
            continue;
        if (!pass.body_line_fits(cp))
            return false;
        if (scan_words(line, qoscnv_class_pattern).count == 1) {
            pass.log("hit next class\n");
            return true;
        }
        if (!add_action(pmap, cls, line))
            return false;
    }
    return true;
}

bool policymap_builder_t::add_action(policymap_elem_t &pmap, class_elem_t &cls,
                                     const std::string &line) {
    pass.log("\tfound action: %s\n", line.c_str());
    actions_elem_t *action = qoscnv_new_action(pass, line + '\n');
    if (!action)
        return pass.no_memory_for("action");
    action->type = qoscnv_convert_action_to_pmap_type(action->action);
    pmap.type |= action->type;
    class_elem_t *taker = class_for(pmap, cls, action->type);
    if (!taker) {
        free(action);
        return false;
    }
    taker->class_actions.append(action);
    return true;
}
