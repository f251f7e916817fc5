// 4.1(3) has no "match-any", and has class-maps for the two special classes:
//
//     class-map type qos match-any c1        class-map type qos class-ip-multicast
//       match cos 5
//                                            class-map type qos class-all-flood
//
//                                            class-map type qos c1
//                                              match cos 5

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

using engine::length;
using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_remove_match_any"};
// By which those who read the logs know the entry of the pass.
constexpr int entry_number = 2094;
constexpr uint32_t blank_length = 1;

// Writes the class-map of a special class at `at`, which moves behind it.
bool write_special_classmap(std::string_view name, position_t &at) {
    const std::string stanza = "\nclass-map type qos " + std::string(name) + '\n';
    const position_t written_at = at;
    if (!pass.write(at, stanza))
        return false;
    pass.log("insert %s length %d at byte %d\n", name.data(), static_cast<int>(stanza.size()),
             static_cast<int>(written_at));
    return true;
}

// Takes "match-any " out of the class-map line at `line`. Returns false, with a message, at a word
// that does not fit.
bool strip(position_t line, engine::search_ahead_t &types) {
    const words_t words = scan_words(*qoscnv_engine.text, line, "class-map type %s %s %s");
    if (!pass.fits(words))
        return false;
    const auto &[type, match, name] = words.word;
    if (name.empty())
        return true;
    pass.log("class-map type %s %s name %s\n", type.c_str(), match.c_str(), name.c_str());
    if (!type.starts_with("qos") || !match.starts_with("match-an"))
        return true;
    const position_t found = types.from(line);
    if (found == nowhere) {
        pass.log("\"%s\" not found for type %s class-map name %s\n", type_qos.data(), type.c_str(),
                 name.c_str());
        return true;
    }
    const position_t behind_type = found + length(type_qos) + blank_length;
    qoscnv_delete_text(behind_type, length(match_any));
    pass.log("delete %s for type %s class-map name %s\n", match_any.data(), type.c_str(),
             name.c_str());
    return true;
}

} // namespace

syserr_t qoscnv_remove_match_any() {
    const bool from_ge_5_0_2 = qoscnv_ver_from_ge_5_0_2();
    pass.log("%s(%d): ver from_ge_5_0_2 %d, to_eq_4_1_3 %d\n", pass.name, entry_number,
             from_ge_5_0_2, qoscnv_ver_to_eq_4_1_3());
    if (!from_ge_5_0_2)
        return 0;
    position_t cp = qoscnv_file_start_qossection();
    if (cp == nowhere)
        return 0;
    if (!write_special_classmap(class_ip_multicast, cp) ||
        !write_special_classmap(class_all_flood, cp))
        return engine::failure;
    engine::search_ahead_t types(qoscnv_engine, type_qos);
    while ((cp = qoscnv_find("\nclass-map", cp)) != nowhere) {
        pass.log("found class-map at byte %d\n", static_cast<int>(cp));
        cp += newline_length;
        if (!strip(cp, types))
            return engine::failure;
    }
    return 0;
}
