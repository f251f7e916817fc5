// Class-maps that matched a qos-group only are empty by now and go, but for the first one of each
// name that is to be kept:
//
//     class-map c1           (kept)        class-map c1
//       match cos 5                          match cos 5
//     class-map c1                         policy-map p1
//     policy-map p1

#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

namespace {

constexpr const char *pass = "qoscnv_remove_empty_classmaps";

// Reads the name in the class-map line at `line`; empty when that has none. Returns false, with a
// message, when it does not fit.
bool read_name(position line, std::string &name) {
    const position line_end = qoscnv_line_after(line);
    const position first_word = line + length("class-map");
    const words_t words = scan_words(*qoscnv_engine.text, first_word, " %s");
    return true;
}

} // namespace
