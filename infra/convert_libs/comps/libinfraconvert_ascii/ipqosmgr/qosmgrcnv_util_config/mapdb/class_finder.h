// The classes of policy-maps by name, while the lists only grow at their ends. Nearly every policy
// has a handful of them, which a walk finds sooner than an index; a long list gets one.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/name_index.h"

#include <algorithm>
#include <unordered_map>

class class_finder_t {
  public:
    // First class of `pmap` with that name that `accepts` returns true for, or null.
    template<class Accepts>
    class_elem_t *first(const policymap_elem_t &pmap, std::string_view name, Accepts accepts) {
        constexpr int longest_walk = 16;
        class_elem_t *cls = pmap.classes.first;
        for (int walked = 0; cls && walked < longest_walk; cls = cls->next, walked++) {
            if (name == cls->name && accepts(*cls))
                return cls;
        }
        return cls ? first_in_index(pmap, name, accepts) : nullptr;
    }

  private:
    template<class Accepts>
    class_elem_t *first_in_index(const policymap_elem_t &pmap, std::string_view name,
                                 Accepts accepts) {
        const auto named = indexes.try_emplace(&pmap, pmap.classes).first->second.named(name);
        const auto found =
            std::ranges::find_if(named, [&](const class_elem_t *cls) { return accepts(*cls); });
        return found == named.end() ? nullptr : *found;
    }

    std::unordered_map<const policymap_elem_t *, name_index_t<class_elem_t>> indexes;
};
