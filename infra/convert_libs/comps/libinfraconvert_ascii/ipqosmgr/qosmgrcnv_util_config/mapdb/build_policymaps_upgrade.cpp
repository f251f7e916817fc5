// Untyped policy-maps to records, each class split by the types of its actions:
//
//     policy-map p1
//       class c1
//         bandwidth percent 20
//         pause no-drop
//
// gives a policy-map p1 of types queuing and unified-fabric with two classes c1, one of each type.

#include "ipqosmgr/qosmgrcnv_util_config/mapdb/builder.h"

using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

class untyped_builder_t final : public policymap_builder_t {
  public:
    untyped_builder_t() : policymap_builder_t("qoscnv_build_policymaps_db_upgrade") {}

    // Appends class-maps for the special classes that some policy-map uses. Returns false, with a
    // message, without memory.
    bool append_special_classmaps() const {
        return (!uses_ip_multicast || append_classmap(class_ip_multicast)) &&
               (!uses_all_flood || append_classmap(class_all_flood));
    }

  private:
    bool read_map_name(position_t keyword, std::string &name) override {
        return qoscnv_read_map_name(pass, keyword, "policy-map %s", name);
    }

    bool read_class_name(const std::string &line, std::string &name) override {
        const words_t words = scan_words(line, qoscnv_class_pattern);
        if (words.count == 0)
            return pass.give_up("unexpected class format; aborting");
        name = words.word[0];
        uses_ip_multicast |= name == class_ip_multicast;
        uses_all_flood |= name == class_all_flood;
        return true;
    }

    // The first record of the name that has the type, or none yet.
    class_elem_t *class_for(policymap_elem_t &pmap, class_elem_t &cls, uint8_t type) override {
        class_elem_t *taker = class_finder.first(pmap, cls.name, [&](const class_elem_t &c) {
            return c.type == QOSCNV_TYPE_NONE || c.type == type;
        });
        if (!taker)
            taker = append_class(pmap, cls.name);
        if (taker)
            taker->type = type;
        return taker;
    }

    bool append_classmap(std::string_view name) const {
        classmap_elem_t *map = qoscnv_new_classmap(pass, name);
        if (!map)
            return pass.no_memory_for("class-map");
        classmaps.append(map);
        return true;
    }

    bool uses_ip_multicast = false;
    bool uses_all_flood = false;
};

} // namespace

syserr_t qoscnv_build_policymaps_db_upgrade() {
    untyped_builder_t builder;
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("policy-map", cp)) != nowhere) {
        if (!builder.build(cp))
            return engine::failure;
    }
    if (!builder.append_special_classmaps())
        return engine::failure;
    qoscnv_db_print_classmaps();
    return 0;
}
