// What the builders of the database share.
#pragma once

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/class_finder.h"

// Reads the name of a map from the text at its keyword, with a pattern such as "class-map %s".
// Returns false, with a message, when there is no word or one that does not fit.
bool qoscnv_read_map_name(const qoscnv_pass_t &pass, engine::position_t keyword,
                          const char *pattern, std::string &name);

// Pattern of a class line without a type.
constexpr const char *qoscnv_class_pattern = "  class %s\n";

// Reads policy-maps of one form into the database. The forms differ in how a line names its
// policy-map or class, and in which class record takes an action.
class policymap_builder_t {
  public:
    // Reads the policy-map whose keyword stands at `cp`, which moves behind its body. Returns
    // false, mostly with a message.
    bool build(engine::position_t &cp);

  protected:
    explicit policymap_builder_t(const char *name_of_pass) : pass{name_of_pass} {}
    ~policymap_builder_t() = default;

    // Makes a class record and appends it to `pmap`. Null, with a message, without memory.
    class_elem_t *append_class(policymap_elem_t &pmap, std::string_view name) const;

    const qoscnv_pass_t pass;
    class_finder_t class_finder;

  private:
    // Read a name; false with a message.
    virtual bool read_map_name(engine::position_t keyword, std::string &name) = 0;
    virtual bool read_class_name(const std::string &line, std::string &name) = 0;
    // The class record that takes an action of `type` below the class line of `cls`, with its type
    // adapted. Null with a message.
    virtual class_elem_t *class_for(policymap_elem_t &pmap, class_elem_t &cls, uint8_t type) = 0;

    bool build_class(policymap_elem_t &pmap, engine::position_t &cp);
    bool build_actions(policymap_elem_t &pmap, class_elem_t &cls, engine::position_t &cp);
    bool add_action(policymap_elem_t &pmap, class_elem_t &cls, const std::string &line);
};
