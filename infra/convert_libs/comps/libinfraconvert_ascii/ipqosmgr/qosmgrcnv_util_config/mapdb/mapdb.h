// The QoS map database: the class-maps and policy-maps of the configuration as records, with a type
// for every action, class and map, worked out from the action's keywords.
//
// The records live in four lists, in the order in which the text was read. A lookup takes the first
// record of a name. The database never edits the text.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

#include <span>

// A singly-linked list that knows its last element's link, so that appending takes constant time.
template<class Element> struct tail_queue_t {
    Element *first = nullptr;
    Element **last = &first;

    bool empty() const { return !first; }

    void append(Element *element) {
        element->next = nullptr;
        *last = element;
        last = &element->next;
    }

    void insert_head(Element *element) { insert_at(&first, element); }
    void insert_after(Element *before, Element *element) { insert_at(&before->next, element); }

    // Unlinks the element that `link` points to, and returns it.
    Element *unlink(Element **link) {
        Element *element = *link;
        *link = element->next;
        if (last == &element->next)
            last = link;
        return element;
    }

  private:
    void insert_at(Element **link, Element *element) {
        element->next = *link;
        *link = element;
        if (last == link)
            last = &element->next;
    }
};

// A record is one allocation: its text, at most 199 characters, stands right behind its fields.

// A name, or a match line of a class-map.
struct list_elem_t {
    list_elem_t *next;
    const char *name;
};

struct classmap_elem_t {
    classmap_elem_t *next;
    tail_queue_t<list_elem_t> matches; // whole lines, newline included
    uint8_t qos_group;
    uint8_t type; // in an upgrade, the types of the class-maps already written for this name
    const char *name;
};

// One action line of a class.
struct actions_elem_t {
    actions_elem_t *next;
    uint8_t type;
    const char *action; // the whole line, indentation and newline included
};

// A class of one policy-map.
struct class_elem_t {
    class_elem_t *next;
    tail_queue_t<actions_elem_t> class_actions;
    uint8_t type;
    const char *name; // of a class-map, or a predefined class
};

struct policymap_elem_t {
    policymap_elem_t *next;
    tail_queue_t<class_elem_t> classes;
    uint8_t type;   // of all its actions
    boolean sysqos; // attached under "system qos"
    const char *name;
};

extern tail_queue_t<classmap_elem_t> classmaps;
extern tail_queue_t<policymap_elem_t> policymaps;
extern tail_queue_t<list_elem_t> empty_classmaps;  // to be kept although they are empty
extern tail_queue_t<list_elem_t> empty_policymaps; // typed policy-maps without a body

// Empties the four lists.
void qoscnv_db_init();
// Frees every record, each with a trace, and leaves the lists empty.
void qoscnv_db_teardown();

// Make a zeroed record with that text, traced as an allocation by `pass`. Null when there is no
// memory.
list_elem_t *qoscnv_new_list_elem(const qoscnv_pass_t &pass, std::string_view name);
classmap_elem_t *qoscnv_new_classmap(const qoscnv_pass_t &pass, std::string_view name);
policymap_elem_t *qoscnv_new_policymap(const qoscnv_pass_t &pass, std::string_view name);
class_elem_t *qoscnv_new_class(const qoscnv_pass_t &pass, std::string_view name);
actions_elem_t *qoscnv_new_action(const qoscnv_pass_t &pass, std::string_view line);
// Frees a record that is in no list, with the trace of `pass`.
void qoscnv_free_list_elem(const qoscnv_pass_t &pass, list_elem_t *elem);

// The records of the lists of class-maps and policy-maps by name, at a constant cost: all
// class-maps of the name, in the order of the list; the first class-map or policy-map, or null.
std::span<classmap_elem_t *const> qoscnv_classmaps_named(std::string_view name);
classmap_elem_t *qoscnv_find_classmap(std::string_view name);
policymap_elem_t *qoscnv_find_policymap(std::string_view name);

// Type of an action line, by the first of these keywords that it contains anywhere: "set
// qos-group"; a unified-fabric keyword; "bandwidth" or "priority".
uint8_t qoscnv_convert_action_to_pmap_type(const char *action);

// Builders: read the text into the lists. Return 0, or -1 at a line that they cannot read or
// without memory.
syserr_t qoscnv_build_classmaps_db();            // untyped class-maps
syserr_t qoscnv_build_policymaps_db_upgrade();   // untyped policy-maps; one class record per type
syserr_t qoscnv_build_policymaps_db_downgrade(); // typed policy-maps; one class record per name

// Dumps for the log.
void qoscnv_db_print_policymaps();
void qoscnv_db_print_classmaps();
void qoscnv_db_print_empty_policymaps();
void qoscnv_db_print_empty_classmaps();
