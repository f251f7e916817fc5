// The records of a list by their names, beside the list. For lists that are only appended to: a
// look takes in what came since the last one.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

#include <span>
#include <unordered_map>
#include <vector>

template<class Element> class name_index_t {
  public:
    explicit name_index_t(const tail_queue_t<Element> &indexed) : list(indexed) {}

    // All records of that name, in the order of the list.
    std::span<Element *const> named(std::string_view name) {
        take_in_new();
        const auto found = records.find(name);
        return found == records.end() ? std::span<Element *const>() : found->second;
    }

    // The first one, or null.
    Element *first(std::string_view name) {
        const auto all = named(name);
        return all.empty() ? nullptr : all.front();
    }

    // Forgets all records, which are then no more.
    void clear() {
        records.clear();
        last = nullptr;
    }

  private:
    void take_in_new() {
        while (Element *next = last ? last->next : list.first) {
            records[next->name].push_back(next);
            last = next;
        }
    }

    const tail_queue_t<Element> &list;
    Element *last = nullptr; // taken in
    std::unordered_map<std::string_view, std::vector<Element *>> records;
};
