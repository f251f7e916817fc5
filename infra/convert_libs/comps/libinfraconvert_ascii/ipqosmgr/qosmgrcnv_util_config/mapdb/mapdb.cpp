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

// A zero-filled record is the empty record, but for its lists, which point at themselves. `text` is
// its member for the text that stands behind it.
template<class Record>
Record *allocate(const char *function, const char *Record::*text, std::string_view bytes) {
    void *memory = calloc(1, sizeof(Record) + bytes.size() + 1);
    engine::log(qoscnv_engine, function, "Allocating block of memory at %p\n", memory);
    if (!memory)
        return nullptr;
    char *behind = static_cast<char *>(memory) + sizeof(Record);
    memcpy(behind, bytes.data(), bytes.size());
    Record *record = std::construct_at(static_cast<Record *>(memory));
    record->*text = behind;
    return record;
}

template<class Record> Record *named(const char *function, std::string_view name) {
    return allocate(function, &Record::name, name);
}

struct indexes_t {
    name_index_t<classmap_elem_t> classmaps{::classmaps};
    name_index_t<policymap_elem_t> policymaps{::policymaps};
};

indexes_t &indexes() {
    static indexes_t all;
    return all;
}

// Frees every element of `list`, each after what belongs to it. `trace` is told of each.
template<class Element, class Trace, class... Inner>
void free_all(tail_queue_t<Element> &list, Trace trace, Inner... free_inner) {
    while (!list.empty()) {
        Element *element = list.unlink(&list.first);
        (free_inner(element), ...);
        trace(element);
        free(element);
    }
}

template<class Trace> void free_database(Trace trace) {
    indexes().classmaps.clear();
    indexes().policymaps.clear();
    free_all(empty_classmaps, trace);
    free_all(empty_policymaps, trace);
    free_all(classmaps, trace, [&](classmap_elem_t *map) { free_all(map->matches, trace); });
    free_all(policymaps, trace, [&](policymap_elem_t *map) {
        free_all(map->classes, trace,
                 [&](class_elem_t *cls) { free_all(cls->class_actions, trace); });
    });
}

} // namespace

// The records of an earlier conversion are of no use to anybody, so they go without a trace.
void qoscnv_db_init() {
    free_database([](const void *) {});
}

void qoscnv_db_teardown() {
    constexpr const char *function = __func__;
    free_database([&](const void *record) {
        engine::log(qoscnv_engine, function, "Freeing block of memory at %p\n", record);
    });
}

list_elem_t *qoscnv_new_list_elem(const char *function, std::string_view name) {
    return named<list_elem_t>(function, name);
}

classmap_elem_t *qoscnv_new_classmap(const char *function, std::string_view name) {
    auto *map = named<classmap_elem_t>(function, name);
    if (map) {
        map->type = QOSCNV_TYPE_QOS;
        map->qos_group = qos_group_unassigned;
    }
    return map;
}

policymap_elem_t *qoscnv_new_policymap(const char *function, std::string_view name) {
    return named<policymap_elem_t>(function, name);
}

class_elem_t *qoscnv_new_class(const char *function, std::string_view name) {
    return named<class_elem_t>(function, name);
}

actions_elem_t *qoscnv_new_action(const char *function, std::string_view line) {
    return allocate(function, &actions_elem_t::action, line);
}

void qoscnv_free_list_elem(const char *function, list_elem_t *elem) {
    engine::log(qoscnv_engine, function, "Freeing block of memory at %p\n",
                static_cast<const void *>(elem));
    free(elem);
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
