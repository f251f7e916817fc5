// Typed policy-maps to records, one for each name, whatever the types of its stanzas:
//
//     policy-map type queuing p1
//       class type queuing c1
//         bandwidth percent 20
//     policy-map type network-qos p1
//       class type network-qos c1
//         pause no-drop
//
// gives a policy-map p1 of types queuing and unified-fabric with one class c1 of both.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/builder.h"

namespace {

constexpr const char *pass = "qoscnv_build_policymaps_db_downgrade";
constexpr const char *class_pattern = "  class %s\n";
constexpr const char *typed_class_pattern = "  class type %s %s\n";
// Words of a typed line: the type and the name.
constexpr int type_and_name = 2;

bool fail(const char *message) {
    engine::log(qoscnv_engine, pass, "%s; aborting\n", message);
    return false;
}

// Reads the name of the policy-map at `line`. Returns false with a message.
bool read_policymap_name(position line, std::string &name) {
    const words_t words = scan_words(*qoscnv_engine.text, line, "policy-map type %s %s");
    if (!qoscnv_words_fit(pass, words))
        return false;
    if (words.count < type_and_name)
        return fail("unexpected policy-map format");
    name = words.word[1];
    return true;
}

// Reads the name in a class line, which has a type word or, in a type qos policy-map, none. Returns
// false with a message.
bool read_class_name(const std::string &line, std::string &name) {
    const words_t typed = scan_words(line, typed_class_pattern);
    if (typed.count == type_and_name) {
        name = typed.word[1];
        return true;
    }
    engine::log(qoscnv_engine, pass, "\ttrying to find class of type qos\n");
    const words_t words = scan_words(line, class_pattern);
    if (words.count == 0)
        return fail("unexpected class format");
    name = words.word[0];
    return true;
}

bool add_action(policymap_elem_t &pmap, class_elem_t &cls, const std::string &line) {
    actions_elem_t *action = qoscnv_new_classified_action(pass, line);
    if (!action)
        return false;
    cls.class_actions.append(action);
    cls.type |= action->type;
    pmap.type |= action->type;
    return true;
}

// Reads the actions at `cp`, which moves to the next class or behind the body.
bool build_actions(policymap_elem_t &pmap, class_elem_t &cls, position &cp) {
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
        if (!add_action(pmap, cls, line))
            return false;
    }
    return true;
}

// Reads the class at `cp`, which moves behind its actions.
bool build_class(policymap_elem_t &pmap, position &cp) {
    const std::string line = qoscnv_linebuf(cp);
    if (!qoscnv_body_line_fits(pass, cp))
        return false;
    if (!qoscnv_is_class_line(line)) {
        engine::log(qoscnv_engine, pass, "Unexpected text: %s\n", line.c_str());
        return false;
    }
    engine::log(qoscnv_engine, pass, "\tfound class: %s\n", line.c_str());
    std::string name;
    if (!read_class_name(line, name))
        return false;
    class_elem_t *cls = qoscnv_lookup(pmap.classes, name);
    if (!cls)
        cls = qoscnv_append_class(pass, pmap, name);
    if (!cls)
        return false;
    cp = qoscnv_line_after(cp);
    return build_actions(pmap, *cls, cp);
}

// Reads the policy-map at the line `cp`, which moves behind its body.
bool build_policymap(position &cp) {
    engine::log(qoscnv_engine, pass, "found policy-map at byte %d\n", static_cast<int>(cp));
    std::string name;
    if (!read_policymap_name(cp, name))
        return false;
    engine::log(qoscnv_engine, pass, "found policy-map name %s\n", name.c_str());
    cp = qoscnv_line_after(cp);
    if (qoscnv_nextstanza(cp)) // without a body it is not recorded
        return true;
    policymap_elem_t *pmap = qoscnv_policymap_named(pass, name);
    if (!pmap)
        return false;
    while (qoscnv_in_body(cp)) {
        if (!build_class(*pmap, cp))
            return false;
    }
    return true;
}

} // namespace

syserr_t qoscnv_build_policymaps_db_downgrade() {
    position cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\npolicy-map", cp)) != nowhere) {
        cp += newline_length;
        if (!build_policymap(cp))
            return engine::failure;
        cp -= newline_length; // the newline in front of the next stanza
    }
    qoscnv_db_print_policymaps();
    return 0;
}
