// The four lists and their records.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/name_index.h"

#include <cstdlib>
#include <cstring>
#include <memory>

constinit tail_queue_t<classmap_elem_t> classmaps;
constinit tail_queue_t<policymap_elem_t> policymaps;
constinit tail_queue_t<list_elem_t> empty_classmaps;
constinit tail_queue_t<list_elem_t> empty_policymaps;

namespace {

// One zeroed allocation for a record of `size` bytes and its text behind it. Null without memory.
void *allocate(const qoscnv_pass_t &pass, size_t size, std::string_view text) {
    auto *memory = static_cast<char *>(calloc(1, size + text.size() + 1));
    pass.log("Allocating block of memory at %p\n", static_cast<void *>(memory));
    if (memory)
        memcpy(memory + size, text.data(), text.size());
    return memory;
}

// Makes a record, which is empty when zero-filled, but for its lists: they point at themselves.
template<class Record> Record *make(const qoscnv_pass_t &pass, std::string_view text) {
    void *memory = allocate(pass, sizeof(Record), text);
    return memory ? std::construct_at(static_cast<Record *>(memory)) : nullptr;
}

template<class Record> const char *text_behind(const Record *record) {
    return reinterpret_cast<const char *>(record + 1);
}

template<class Record> Record *make_named(const qoscnv_pass_t &pass, std::string_view name) {
    auto *record = make<Record>(pass, name);
    if (record)
        record->name = text_behind(record);
    return record;
}

// Frees a record, with a trace of `pass` where there is one.
void free_record(const qoscnv_pass_t *pass, void *record) {
    if (pass)
        pass->log("Freeing block of memory at %p\n", record);
    free(record);
}

// Frees every element of `list`, each after what `free_inner` frees of it.
template<class Element, class Inner>
void free_all(const qoscnv_pass_t *pass, tail_queue_t<Element> &list, Inner free_inner) {
    while (!list.empty()) {
        Element *element = list.unlink(&list.first);
        free_inner(*element);
        free_record(pass, element);
    }
}
template<class Element> void free_all(const qoscnv_pass_t *pass, tail_queue_t<Element> &list) {
    free_all(pass, list, [](Element &) {});
}

struct indexes_t {
    name_index_t<classmap_elem_t> classmaps{::classmaps};
    name_index_t<policymap_elem_t> policymaps{::policymaps};
};

indexes_t &indexes() {
    static indexes_t all;
    return all;
}

void free_database(const qoscnv_pass_t *pass) {
    indexes().classmaps.clear();
    indexes().policymaps.clear();
    free_all(pass, empty_classmaps);
    free_all(pass, empty_policymaps);
    free_all(pass, classmaps, [&](classmap_elem_t &map) { free_all(pass, map.matches); });
    free_all(pass, policymaps, [&](policymap_elem_t &map) {
        free_all(pass, map.classes, [&](class_elem_t &cls) { free_all(pass, cls.class_actions); });
    });
}

} // namespace

// The records of an earlier conversion are of no use to anybody, so they go without a trace.
void qoscnv_db_init() { free_database(nullptr); }

void qoscnv_db_teardown() {
    constexpr qoscnv_pass_t pass{"qoscnv_db_teardown"};
    free_database(&pass);
}

list_elem_t *qoscnv_new_list_elem(const qoscnv_pass_t &pass, std::string_view name) {
    return make_named<list_elem_t>(pass, name);
}

classmap_elem_t *qoscnv_new_classmap(const qoscnv_pass_t &pass, std::string_view name) {
    auto *map = make_named<classmap_elem_t>(pass, name);
    if (map) {
        map->type = QOSCNV_TYPE_QOS;
        map->qos_group = qos_group_unassigned;
    }
    return map;
}

policymap_elem_t *qoscnv_new_policymap(const qoscnv_pass_t &pass, std::string_view name) {
    return make_named<policymap_elem_t>(pass, name);
}

class_elem_t *qoscnv_new_class(const qoscnv_pass_t &pass, std::string_view name) {
    return make_named<class_elem_t>(pass, name);
}

actions_elem_t *qoscnv_new_action(const qoscnv_pass_t &pass, std::string_view line) {
    auto *action = make<actions_elem_t>(pass, line);
    if (action)
        action->action = text_behind(action);
    return action;
}

void qoscnv_free_list_elem(const qoscnv_pass_t &pass, list_elem_t *elem) {
    free_record(&pass, elem);
}

std::span<classmap_elem_t *const> qoscnv_classmaps_named(std::string_view name) {
    return indexes().classmaps.named(name);
}

classmap_elem_t *qoscnv_find_classmap(std::string_view name) {
    return indexes().classmaps.first(name);
}

policymap_elem_t *qoscnv_find_policymap(std::string_view name) {
    return indexes().policymaps.first(name);
}

uint8_t qoscnv_convert_action_to_pmap_type(const char *action) {
    struct keyword_t {
        const char *text;
        uint8_t type;
    };
    static constexpr keyword_t keywords[] = {
        {"set qos-group", QOSCNV_TYPE_QOS},
        {"pause", QOSCNV_TYPE_UF},
        {"mtu", QOSCNV_TYPE_UF},
        {"multicast-optimize", QOSCNV_TYPE_UF},
        {"queue-limit", QOSCNV_TYPE_UF},
        {"set cos", QOSCNV_TYPE_UF},
        {"bandwidth", QOSCNV_TYPE_QUEUING},
        {"priority", QOSCNV_TYPE_QUEUING},
    };
    uint8_t type = QOSCNV_TYPE_NONE;
    for (const keyword_t &keyword : keywords) {
        if (strstr(action, keyword.text)) {
            type = keyword.type;
            break;
        }
    }
    switch (type) {
    case QOSCNV_TYPE_QOS:
        qoscnv_log("Action is of type qos\n");
        break;
    case QOSCNV_TYPE_UF:
        qoscnv_log("Action is of type unified-fabric\n");
        break;
    case QOSCNV_TYPE_QUEUING:
        qoscnv_log("Action %s is of type queuing\n", action);
        break;
    default:
        qoscnv_log("Unexpected action; ignoring\n");
        break;
    }
    return type;
}
