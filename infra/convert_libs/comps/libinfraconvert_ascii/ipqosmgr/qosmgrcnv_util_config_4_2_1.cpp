// Between 4.1(3) and 4.2(1) a network-qos policy-map is followed by a copy of itself in which the
// MTU values are those of the other release; on the way up:
//
//     policy-map type network-qos p1        policy-map type network-qos p1
//       class type network-qos c1             class type network-qos c1
//         mtu 2240                              mtu 2240
//                                           policy-map type network-qos p1
//                                             class type network-qos c1
//                                               mtu 2202
//
// To 5.0(2) or later, class-maps of type qos get the "match-any" that they stand for:
//
//     class-map type qos c1                 class-map type qos match-any c1

#include "ipqosmgr/qosmgrcnv_util_config_4_2_1.h"

#include "ipqosmgr/qosmgrcnv_pipeline.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/typed_policymap.h"

namespace {

constexpr const char *match_any_pass = "qoscnv_identify_classmaps_for_type";
// By which those who read the logs know the trace of a class-map.
constexpr int classmap_trace_number = 71;
// Words of a typed map line: the type and the name.
constexpr int type_and_name = 2;

constexpr std::string_view type_qos = "type qos";
constexpr std::string_view match_any = "match-any ";

// Gives the class-map line at `line` its "match-any". Returns false after a refusal.
bool add_match_any(position line, engine::search_ahead_t &types) {
    const words_t words = scan_words(*qoscnv_engine.text, line, "class-map type %s %s");
    if (!qoscnv_words_fit(match_any_pass, words))
        return false;
    if (words.count < type_and_name)
        return true;
    const auto &[type, name, unused] = words.word;
    engine::log(qoscnv_engine, match_any_pass, "%s(%d): found class-map type %s name %s\n",
                match_any_pass, classmap_trace_number, type.c_str(), name.c_str());
    if (!qoscnv_ver_from_eq_4_1_3() || !qoscnv_ver_to_ge_5_0_2() || !type.starts_with("qos"))
        return true;
    const position found = types.from(line);
    if (found == nowhere) {
        engine::log(qoscnv_engine, match_any_pass,
                    "\"%s\" for type %s class-map name %s not found\n", type_qos.data(),
                    type.c_str(), name.c_str());
        return true;
    }
    const position behind_type = found + length("type qos ");
    if (!qoscnv_insert_text(behind_type, match_any))
        return false;
    engine::log(qoscnv_engine, match_any_pass, "insert %s for type %s class-map name %s\n",
                match_any.data(), type.c_str(), name.c_str());
    return true;
}

syserr_t qoscnv_identify_classmaps_for_type() {
    engine::search_ahead_t types(qoscnv_engine, type_qos);
    position cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\nclass-map", cp)) != nowhere) {
        qoscnv_log("found class-map at byte %d\n", static_cast<int>(cp));
        cp += newline_length;
        if (!add_match_any(cp, types))
            return engine::failure;
    }
    return 0;
}

constexpr const char *policymap_pass = "qoscnv_create_qosgrp_policymap_4_2_1";

void trace_upgrade(const char *behind_mtu) {
    engine::log(qoscnv_engine, policymap_pass, "convert %s, ver is to 4.2(1) %d, gt 4.2.(1) %d\n",
                behind_mtu, qoscnv_ver_to_eq_4_2_1(), qoscnv_ver_to_gt_4_2_1());
}

void trace_downgrade(const char *behind_mtu) {
    engine::log(qoscnv_engine, policymap_pass, "convert %s, ver is eq 4.2(1) %d, gt 4.2(1) %d\n",
                behind_mtu, qoscnv_ver_from_eq_4_2_1(), qoscnv_ver_from_gt_4_2_1());
}

// Finds the place behind the last network-qos policy-map, nowhere without one. That is where `at`
// stands once this conversion has written one there.
void find_end_of_policymaps(position &at) {
    engine::log(qoscnv_engine, policymap_pass, "Finding end of type unified-fabric stanzas ...\n");
    engine::last_hits_t header(qoscnv_engine, "policy-map type network-qos", {""});
    if (at == nowhere)
        at = qoscnv_behind_last_stanza(header);
    else
        qoscnv_file_start_qossection(); // as each search for the end says where the section begins
}

// Writes the network-qos policy-map of `pmap` at `at`, see above, which moves behind it.
syserr_t qoscnv_create_qosgrp_policymap_4_2_1(policymap_elem_t &pmap, bool upgrade, position &at) {
    const typed_policymap_pass_t writer = {.name = policymap_pass,
                                           .type = QOSCNV_TYPE_UF,
                                           .upgrade = upgrade,
                                           .trace_mtu = upgrade ? trace_upgrade : trace_downgrade};
    if (!qoscnv_begin_typed_policymap(writer, pmap))
        return engine::failure;
    find_end_of_policymaps(at);
    if (at == nowhere) {
        qoscnv_log("Could not find policy-maps; aborting\n");
        return engine::failure;
    }
    const uint32_t size_before = qoscnv_engine.text->size();
    const syserr_t status = qoscnv_write_typed_policymap(writer, pmap, at);
    at += qoscnv_engine.text->size() - size_before;
    return status;
}

constexpr qoscnv_step_t upgrade_steps[] = {
    {qoscnv_remove_description, nullptr, false},
    {qoscnv_identify_classmaps_for_type, nullptr, false},
    {qoscnv_build_policymaps_db_downgrade, "failed to build policymaps database for upgrade",
     false},
    {[] { return qoscnv_rewrite_maps_4_2_1(true); }, "Could not write out updated maps", true},
};

} // namespace

syserr_t qoscnv_rewrite_maps_4_2_1(boolean is_upgrade) {
    position at = nowhere;
    for (auto *pmap = policymaps.first; pmap; pmap = pmap->next) {
        if (!(pmap->type & QOSCNV_TYPE_UF)) {
            qoscnv_log("policy-map %s does not have actions of type unified-fabric\n", pmap->name);
            continue;
        }
        if (qoscnv_create_qosgrp_policymap_4_2_1(*pmap, is_upgrade, at) != 0) {
            qoscnv_log("could not create type network-qos policy-map for policy-map %s\n",
                       pmap->name);
            return engine::failure;
        }
        qoscnv_log("policy-map %s\n", pmap->name);
    }
    return 0;
}

syserr_t qosmgr_convert_ascii_4_2_1_upgrade() {
    qoscnv_log("entering ...\n");
    const syserr_t status = qoscnv_run_steps(__func__, upgrade_steps);
    if (status == 0)
        qoscnv_log("ver eq_4_1_3 %d to ver eq_4_2_1 %d, gt_4_2_1 %d: cnv completed\n",
                   qoscnv_ver_from_eq_4_1_3(), qoscnv_ver_to_eq_4_2_1(), qoscnv_ver_to_gt_4_2_1());
    return status;
}
