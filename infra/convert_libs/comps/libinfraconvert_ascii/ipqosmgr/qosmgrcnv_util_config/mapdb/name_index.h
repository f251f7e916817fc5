// The records of a list by their names, beside the list. For lists that are only appended to: a
// look takes in what came since the last one.
//
// A table of slots, twice as many as names at least. A name is looked for from the slot of its hash
// on, up to the first slot that is free:
//
//     hash of c7 ->  | c3 | c7 | free | c1, and c1 again | free | ...
//
// One look at a record is then one at the table and one at the record.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

#include <algorithm>
#include <functional>
#include <span>
#include <vector>

template<class Element> class name_index_t {
  public:
    explicit name_index_t(const tail_queue_t<Element> &indexed) : list(indexed) {}

    // All records of that name, in the order of the list. Good until the list grows.
    std::span<Element *const> named(std::string_view name) {
        take_in_new();
        if (slots.empty())
            return {};
        const slot_t &slot = slots[place_of(name, hash_of(name))];
        if (slot.all != alone)
            return groups[slot.all];
        return {&slot.first, slot.first ? size_t{1} : size_t{0}};
    }

    // The first one, or null.
    Element *first(std::string_view name) {
        const auto all = named(name);
        return all.empty() ? nullptr : all.front();
    }

    // Forgets all records, which are then no more.
    void clear() {
        last = nullptr;
        names = 0;
        std::vector<slot_t>().swap(slots);
        std::vector<group_t>().swap(groups);
    }

  private:
    using group_t = std::vector<Element *>;
    static constexpr uint32_t alone = UINT32_MAX;
    static constexpr size_t fewest_slots = 16; // a power of two, as all their numbers
    struct slot_t {
        Element *first = nullptr; // of the name; null: the slot is free
        uint32_t hash = 0;
        uint32_t all = alone; // the group of all records of the name, where there are several
    };

    static uint32_t hash_of(std::string_view name) {
        return static_cast<uint32_t>(std::hash<std::string_view>{}(name));
    }

    // The slot of `name`, or the free one where it would stand.
    size_t place_of(std::string_view name, uint32_t hash) const {
        const size_t mask = slots.size() - 1;
        size_t place = hash & mask;
        while (slots[place].first &&
               (slots[place].hash != hash || name != slots[place].first->name))
            place = (place + 1) & mask;
        return place;
    }

    void take_in_new() {
        while (Element *next = last ? last->next : list.first) {
            take_in(next);
            last = next;
        }
    }

    void take_in(Element *element) {
        if (names >= slots.size() / 2)
            grow();
        const uint32_t hash = hash_of(element->name);
        slot_t &slot = slots[place_of(element->name, hash)];
        if (!slot.first) {
            slot = {element, hash, alone};
            names++;
        } else if (slot.all == alone) {
            groups.push_back({slot.first, element});
            slot.all = static_cast<uint32_t>(groups.size() - 1);
        } else {
            groups[slot.all].push_back(element);
        }
    }

    void grow() {
        std::vector<slot_t> smaller(std::max(slots.size() * 2, fewest_slots));
        smaller.swap(slots);
        for (const slot_t &slot : smaller) {
            if (slot.first)
                slots[place_of(slot.first->name, slot.hash)] = slot;
        }
    }

    const tail_queue_t<Element> &list;
    Element *last = nullptr; // taken in
    std::vector<slot_t> slots;
    size_t names = 0; // taken in
    std::vector<group_t> groups;
};
