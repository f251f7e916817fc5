// For a class c1 of qos-group 2
//
//     class-map type queuing c1              class-map type network-qos c1
//       match qos-group 2                      match qos-group 2

#include "ipqosmgr/qosmgrcnv_util_config/upgrade/typed_classmaps.h"

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

#include <unordered_set>

using engine::length;
using engine::nowhere;
using engine::position_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_create_qosgrp_classmap"};

// Two messages begin with a number, by which those who read the logs tell them apart.
constexpr int number_no_stanza = 526;
constexpr int number_no_classmap = 618;

enum type_t : size_t { qos, queuing, unified_fabric };
constexpr const char *type_names[] = {"qos", "queuing", "unified-fabric"};

position_t end_of_stanzas(const qoscnv_pass_t &for_pass, type_t type, last_headers_t &headers) {
    for_pass.log("Finding end of type %s stanzas ...\n", type_names[type]);
    return qoscnv_behind_last_stanza(headers.by_type, type);
}

// Where the typed class-maps of one policy go.
struct place_t {
    position_t qos;   // behind the last class-map of type qos
    position_t point; // behind what was written last
};

// True when the class-map still has to be written: `map` is then its record, or null when there is
// none.
bool find_unwritten(const class_elem_t &cls, classmap_elem_t *&map) {
    bool skipped = false;
    map = nullptr;
    for (classmap_elem_t *record : qoscnv_classmaps_named(cls.name)) {
        map = record;
        if (!(map->type & cls.type))
            break;
        pass.log("class-map %s of type %d has already been written; skipping\n", map->name,
                 cls.type);
        skipped = true;
    }
    return !skipped;
}

// Makes the record of a special class, and writes its class-map of type qos. Null with a message
// when the insertion was refused, and without one when there is no memory.
classmap_elem_t *add_special_classmap(const char *name, place_t &place) {
    classmap_elem_t *map = qoscnv_new_classmap(pass, name);
    if (!map)
        return nullptr;
    classmaps.append(map);
    const std::string line = std::string("class-map type qos ") + name + '\n';
    if (place.qos == nowhere)
        return pass.write(place.point, line) ? map : nullptr;
    place.point += length(line);
    return pass.write(place.qos, line) ? map : nullptr;
}

std::string classmap_stanza(const class_elem_t &cls, uint8_t type, uint8_t group) {
    const std::string header =
        std::string("class-map ") + qoscnv_type_words(type) + ' ' + cls.name + '\n';
    if (group == qos_group_unassigned)
        return header + '\n';
    return header + "  match qos-group " + std::to_string(group) + '\n';
}

// Writes the class-map of `type` for `cls`, unless that is done. Returns false with a message.
bool write_classmap(const class_elem_t &cls, uint8_t type, place_t &place) {
    pass.log("Finding type %d class %s ...\n", cls.type, cls.name);
    classmap_elem_t *map = nullptr;
    if (!find_unwritten(cls, map))
        return true;
    if (!map && qoscnv_is_special_class(cls.name))
        map = add_special_classmap(cls.name, place);
    else if (!map)
        pass.log("%d: Could not find class-map for type %d name %s; aborting\n", number_no_classmap,
                 type, cls.name);
    if (!map)
        return false;

    uint8_t group = qos_group_unassigned;
    if (qoscnv_classmap_to_qosgrp(cls.name, &group) != 0) {
        pass.log("Could not find qos-group for %s; aborting\n", cls.name);
        return false;
    }
    pass.log("Adding class-map of type %d, name %s, qos group %u\n", type, cls.name, group);
    map->type |= cls.type;
    return pass.write(place.point, classmap_stanza(cls, type, group));
}

using names_t = std::unordered_set<std::string_view>;

// The names of the classes of `pmap` that are of type network-qos and no other.
names_t network_qos_classes(const policymap_elem_t &pmap) {
    names_t names;
    for (const auto *cls = pmap.classes.first; cls; cls = cls->next) {
        if (cls->type == QOSCNV_TYPE_UF)
            names.insert(cls->name);
    }
    return names;
}

// Puts a class of type network-qos without actions behind `cls` when the policy has none of that
// name: then it is not among `known`. Returns false with a message.
bool add_network_qos_class(policymap_elem_t &pmap, class_elem_t &cls, names_t &known) {
    if (!known.insert(cls.name).second)
        return true;
    class_elem_t *added = qoscnv_new_class(pass, cls.name);
    if (!added)
        return pass.no_memory_for("class");
    added->type = QOSCNV_TYPE_UF;
    pmap.classes.insert_after(&cls, added);
    return true;
}

} // namespace

last_headers_t::last_headers_t(const char *kind_word, const std::string &header)
    : kind(kind_word), by_type(qoscnv_engine, header + " type ",
                               {type_names[qos], type_names[queuing], type_names[unified_fabric]}) {
}

position_t stanza_ends_t::insertion_point(uint8_t type) const {
    if (type == QOSCNV_TYPE_UF && unified_fabric != nowhere)
        return unified_fabric;
    return queuing != nowhere ? queuing : qos;
}

stanza_ends_t qoscnv_find_stanza_ends(const qoscnv_pass_t &for_pass, last_headers_t &headers) {
    stanza_ends_t ends;
    ends.qos = end_of_stanzas(for_pass, qos, headers);
    if (ends.qos == nowhere)
        for_pass.log("Warning: Unexpected lack of type qos %ss; ignoring\n", headers.kind);
    ends.queuing = end_of_stanzas(for_pass, queuing, headers);
    // Written as network-qos by now, so this finds only what stood in the file.
    ends.unified_fabric = end_of_stanzas(for_pass, unified_fabric, headers);
    return ends;
}

syserr_t qoscnv_create_qosgrp_classmap(policymap_elem_t &pmap, uint8_t type,
                                       last_headers_t &headers) {
    pass.log("Creating new class-maps of type %d for policy-map %s\n", type, pmap.name);
    if (type != QOSCNV_TYPE_QUEUING && type != QOSCNV_TYPE_UF) {
        pass.log("Unexpected type %u\n", type);
        return engine::failure;
    }
    const stanza_ends_t ends = qoscnv_find_stanza_ends(pass, headers);
    place_t place = {ends.qos, ends.insertion_point(type)};
    if (place.point == nowhere) {
        pass.log("%d: Could not find class-maps for type %d name %s; aborting\n", number_no_stanza,
                 type, pmap.name);
        return 0;
    }
    names_t network_qos;
    if (type == QOSCNV_TYPE_UF)
        network_qos = network_qos_classes(pmap);
    for (class_elem_t *cls = pmap.classes.first; cls; cls = cls->next) {
        if (cls->name == class_fcoe || cls->name == class_default)
            continue;
        if (cls->type & type) {
            if (!write_classmap(*cls, type, place))
                return engine::failure;
        } else if (type == QOSCNV_TYPE_UF && !add_network_qos_class(pmap, *cls, network_qos)) {
            return engine::failure;
        }
    }
    return 0;
}
