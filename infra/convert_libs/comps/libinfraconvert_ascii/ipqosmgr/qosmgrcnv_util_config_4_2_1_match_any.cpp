// To 5.0(2) or later, class-maps of type qos get the "match-any" that they stand for:
//
//     class-map type qos c1                 class-map type qos match-any c1

#include "ipqosmgr/qosmgrcnv_util_config_4_2_1.h"

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

using engine::length;
using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_identify_classmaps_for_type"};
// The trace of a class-map carries a number, by which those who read the logs know it.
constexpr int classmap_trace_number = 71;
constexpr uint32_t blank_length = 1;

// Gives the class-map line at `line` its "match-any". Returns false after a refusal.
bool add_match_any(position_t line, engine::search_ahead_t &types) {
    const words_t words = scan_words(*qoscnv_engine.text, line, "class-map type %s %s");
    if (!pass.fits(words))
        return false;
    if (words.count < type_and_name)
        return true;
    const auto &[type, name, unused] = words.word;
    pass.log("%s(%d): found class-map type %s name %s\n", pass.name, classmap_trace_number,
             type.c_str(), name.c_str());
    if (!qoscnv_ver_to_ge_5_0_2() || !type.starts_with("qos"))
        return true;
    const position_t found = types.from(line);
    if (found == nowhere) {
        pass.log("\"%s\" for type %s class-map name %s not found\n", type_qos.data(), type.c_str(),
                 name.c_str());
        return true;
    }
    const position_t behind_type = found + length(type_qos) + blank_length;
    if (!qoscnv_insert_text(behind_type, match_any))
        return false;
    pass.log("insert %s for type %s class-map name %s\n", match_any.data(), type.c_str(),
             name.c_str());
    return true;
}

} // namespace

syserr_t qoscnv_identify_classmaps_for_type() {
    engine::search_ahead_t types(qoscnv_engine, type_qos);
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\nclass-map", cp)) != nowhere) {
        pass.log("found class-map at byte %d\n", static_cast<int>(cp));
        cp += newline_length;
        if (!add_match_any(cp, types))
            return engine::failure;
    }
    return 0;
}
