#include "ipqosmgr/qosmgrcnv_util_config/mapdb/builder.h"

#include <cerrno>
#include <cstring>

bool qoscnv_read_map_name(const char *pass, position keyword, const char *pattern,
                          std::string &name) {
    const words_t words = scan_words(*qoscnv_engine.text, keyword, pattern);
    if (!qoscnv_words_fit(pass, words))
        return false;
    if (words.count == 0) {
        engine::log(qoscnv_engine, pass, "Unexpected text: %s\n", qoscnv_linebuf(keyword).c_str());
        return false;
    }
    name = words.word[0];
    return true;
}

policymap_elem_t *qoscnv_policymap_named(const char *pass, const std::string &name) {
    policymap_elem_t *pmap = qoscnv_find_policymap(name);
    if (pmap)
        return pmap;
    pmap = qoscnv_new_policymap(pass, name);
    if (pmap)
        policymaps.append(pmap);
    return pmap;
}

class_elem_t *qoscnv_append_class(const char *pass, policymap_elem_t &pmap,
                                  const std::string &name) {
    class_elem_t *cls = qoscnv_new_class(pass, name);
    if (cls)
        pmap.classes.append(cls);
    else
        engine::log(qoscnv_engine, pass, "could not allocate memory for class: %s\n",
                    strerror(errno));
    return cls;
}

actions_elem_t *qoscnv_new_classified_action(const char *pass, const std::string &line) {
    engine::log(qoscnv_engine, pass, "\tfound action: %s\n", line.c_str());
    actions_elem_t *action = qoscnv_new_action(pass, line + '\n');
    if (action)
        action->type = qoscnv_convert_action_to_pmap_type(action->action);
    else
        engine::log(qoscnv_engine, pass, "could not allocate memory for action: %s\n",
                    strerror(errno));
    return action;
}
