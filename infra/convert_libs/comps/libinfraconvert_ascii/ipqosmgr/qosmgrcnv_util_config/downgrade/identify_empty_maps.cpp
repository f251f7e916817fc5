// Notes, while the text is still as the user wrote it, the maps that the later passes must not
// lose:
//
//     class-map type qos c1        kept when a policy uses c1, or when nothing stands below it
//     policy-map type qos p1       noted when nothing stands below it: the database has no record

#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/name_index.h"

#include <unordered_set>

using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t policymap_pass{"qoscnv_identify_empty_policymaps"};
constexpr qoscnv_pass_t classmap_pass{"qoscnv_identify_empty_classmaps"};

// Appends `name` to `list`. Returns false without memory.
bool append(const qoscnv_pass_t &pass, tail_queue_t<list_elem_t> &list, const std::string &name) {
    list_elem_t *elem = qoscnv_new_list_elem(pass, name);
    if (elem)
        list.append(elem);
    return elem;
}

// What the text's class-maps are compared with.
struct known_names_t {
    name_index_t<list_elem_t> kept{empty_classmaps};
    std::unordered_set<std::string_view> used; // in some policy

    known_names_t() {
        for (const auto *pmap = policymaps.first; pmap; pmap = pmap->next) {
            for (const auto *cls = pmap->classes.first; cls; cls = cls->next)
                used.insert(cls->name);
        }
    }
};

// Keeps the class-map `name`, which some policy uses, with a trace of each class of each policy.
// Returns false without memory.
bool keep_used_classmap_traced(const std::string &name, known_names_t &known) {
    for (const auto *pmap = policymaps.first; pmap; pmap = pmap->next) {
        classmap_pass.log("Looking through policy-map %s\n", pmap->name);
        for (const auto *cls = pmap->classes.first; cls; cls = cls->next) {
            classmap_pass.log("Looking through class-map %s\n", cls->name);
            if (name != cls->name)
                continue;
            if (known.kept.first(name)) {
                classmap_pass.log(
                    "class-map name %s already in empty classmaps list; skipping add\n",
                    name.c_str());
                continue;
            }
            classmap_pass.log(
                "class-map name %s matches class-map in use in policy %s; adding to list\n",
                name.c_str(), pmap->name);
            if (!append(classmap_pass, empty_classmaps, name))
                return false;
        }
    }
    return true;
}

// Keeps the class-map `name` when a policy uses it. Returns false without memory.
bool keep_used_classmap(const std::string &name, known_names_t &known) {
    if (engine::log_is_on(qoscnv_engine))
        return keep_used_classmap_traced(name, known);
    return !known.used.contains(name) || known.kept.first(name) ||
           append(classmap_pass, empty_classmaps, name);
}

// Keeps the class-map `name`, which has no body. Returns false without memory.
bool keep_empty_classmap(const std::string &name, known_names_t &known) {
    if (const list_elem_t *elem = known.kept.first(name)) {
        classmap_pass.log("class-map name %s matches user class-map name %s; skipping add\n",
                          name.c_str(), elem->name);
        return true;
    }
    if (!append(classmap_pass, empty_classmaps, name))
        return false;
    classmap_pass.log("added %s to empty classmaps list\n", name.c_str());
    return true;
}

} // namespace

syserr_t qoscnv_identify_empty_policymaps() {
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\npolicy-map", cp)) != nowhere) {
        policymap_pass.log("found policy-map at byte %d\n", static_cast<int>(cp));
        cp += newline_length;
        const words_t words = scan_words(*qoscnv_engine.text, cp, "policy-map type %s %s");
        if (!policymap_pass.fits(words))
            return engine::failure;
        if (words.count < type_and_name)
            continue;
        const std::string &name = words.word[1];
        policymap_pass.log("found policy-map name %s\n", name.c_str());
        cp = qoscnv_line_after(cp);
        if (qoscnv_nextstanza(cp) && !append(policymap_pass, empty_policymaps, name))
            return engine::failure;
    }
    qoscnv_db_print_empty_policymaps();
    return 0;
}

syserr_t qoscnv_identify_empty_classmaps() {
    known_names_t known;
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\nclass-map", cp)) != nowhere) {
        classmap_pass.log("found class-map at byte %d\n", static_cast<int>(cp));
        cp += newline_length;
        const words_t words = scan_words(*qoscnv_engine.text, cp, "class-map type %s %s");
        if (!classmap_pass.fits(words))
            return engine::failure;
        if (words.count < type_and_name)
            continue;
        const std::string &name = words.word[1];
        classmap_pass.log("found class-map name %s\n", name.c_str());
        classmap_pass.log("Looking for class-map %s\n", name.c_str());
        if (!keep_used_classmap(name, known))
            return engine::failure;
        cp = qoscnv_past_empty_lines(qoscnv_line_after(cp));
        const bool used = known.used.contains(name);
        if (!used && qoscnv_nextstanza(cp) && !keep_empty_classmap(name, known))
            return engine::failure;
    }
    qoscnv_db_print_empty_classmaps();
    return 0;
}
