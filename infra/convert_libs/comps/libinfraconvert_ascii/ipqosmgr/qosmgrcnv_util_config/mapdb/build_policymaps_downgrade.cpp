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

using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

class typed_builder_t final : public policymap_builder_t {
  public:
    typed_builder_t() : policymap_builder_t("qoscnv_build_policymaps_db_downgrade") {}

  private:
    bool read_map_name(position_t keyword, std::string &name) override {
        const words_t words = scan_words(*qoscnv_engine.text, keyword, "policy-map type %s %s");
        if (!pass.fits(words))
            return false;
        if (words.count < type_and_name)
            return pass.give_up("unexpected policy-map format; aborting");
        name = words.word[1];
        return true;
    }

    // In a type qos policy-map the class line has no type.
    bool read_class_name(const std::string &line, std::string &name) override {
        const words_t typed = scan_words(line, "  class type %s %s\n");
        if (typed.count == type_and_name) {
            name = typed.word[1];
            return true;
        }
        pass.log("\ttrying to find class of type qos\n");
        const words_t words = scan_words(line, qoscnv_class_pattern);
        if (words.count == 0)
            return pass.give_up("unexpected class format; aborting");
        name = words.word[0];
        return true;
    }

    class_elem_t *class_for(policymap_elem_t & /*pmap*/, class_elem_t &cls, uint8_t type) override {
        cls.type |= type;
        return &cls;
    }
};

} // namespace

syserr_t qoscnv_build_policymaps_db_downgrade() {
    typed_builder_t builder;
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\npolicy-map", cp)) != nowhere) {
        cp += newline_length;
        if (!builder.build(cp))
            return engine::failure;
        cp -= newline_length; // the newline in front of the next stanza
    }
    qoscnv_db_print_policymaps();
    return 0;
}
