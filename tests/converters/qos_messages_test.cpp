// What the QoS passes say where a text is not what they expect: the conversion ends with -1 and the
// file stays, or the pass goes by.

#include "support/services.h"

#include <gtest/gtest.h>
#include <regex>

namespace {

// Releases for the pipelines.
struct pair_t {
    const char *from, *to;
};
constexpr pair_t to_typed = {"4.0(1)", "4.1(3)"}, to_untyped = {"5.0(2)", "4.0(1)"},
                 mtu_up = {"4.1(3)", "5.0(2)"}, mtu_down = {"5.0(2)", "4.1(3)"};

const std::string long_word(200, 'w'), cut_word(199, 'w');
// A name that fits its own line, but not the typed one.
const std::string long_name(180, 'n');

// Attachments of a policy that each grow to almost six times their length.
std::string untyped_with_attachments(int count) {
    std::string text = "\nclass-map a\nclass-map b\npolicy-map p\n  class a\n    priority\n"
                       "    pause\nsystem qos\n";
    while (count-- > 0)
        text += "  service-policy p\n";
    return text;
}

// More than are looked through one by one; the last one comes again.
std::string many_classes(const std::string &type) {
    std::string text;
    for (int i = 0; i < 22; i++)
        text +=
            "  class " + type + "c" + std::to_string(std::min(i, 20)) + "\n    set qos-group 2\n";
    return text;
}

struct row_t {
    pair_t releases;
    std::string text;
    std::string messages; // stand in the log, one behind the other
};

// Each ends the conversion. The end marker in a name makes the text that carries it refused.
const row_t refused[] = {
    // Untyped maps are read.
    {to_typed, "\nclass-map " + long_word + "\n",
     "qoscnv_build_classmaps_db(): Unexpected text: " + cut_word + "\n"},
    {to_typed, "\nclass-map", "qoscnv_build_classmaps_db(): Unexpected text: class-map"},
    {to_typed, "\nclass-map c\n  match " + long_word + "\n",
     "qoscnv_build_classmaps_db(): Unexpected text:   match " + cut_word.substr(8) + "\n"},
    {to_typed, "\npolicy-map p\n  class " + long_word + "\n",
     "qoscnv_build_policymaps_db_upgrade(): Unexpected text:   class " + cut_word.substr(8) + "\n"},
    {to_typed, "\npolicy-map p\n\n", "qoscnv_build_policymaps_db_upgrade(): Unexpected text: \n"},
    {to_typed, "\npolicy-map p\n  class\n",
     "qoscnv_build_policymaps_db_upgrade(): \tfound class:   class\n"
     "qoscnv_build_policymaps_db_upgrade(): unexpected class format; aborting\n"},
    {to_typed, "\npolicy-map p\n  class c\n    " + long_word + "\n",
     "qoscnv_build_policymaps_db_upgrade(): Unexpected text:     " + cut_word.substr(4) + "\n"},
    // The system policy.
    {to_typed, "\nclass-map c\nsystem qos\n  service-policy",
     "qoscnv_assign_qosgrp_to_sysqos_policy(): unexpected service-policy format; aborting\n"},
    {to_typed, "\nclass-map c\nsystem qos\n  service-policy " + long_word + "\n",
     "qoscnv_assign_qosgrp_to_sysqos_policy(): Unexpected text: " + cut_word + "\n"},
    // Typed maps are written.
    {to_typed, "\nclass-map a\nclass-map b\npolicy-map p\n  class c9\n    priority\nend\n",
     "qoscnv_create_qosgrp_classmap(): 618: Could not find class-map for type 2 name c9; aborting\n"
     "qoscnv_rewrite_maps(): could not create type queuing class-map for policy-map p\n"},
    {to_typed, "\nclass-map a\nclass-map b\npolicy-map p\n  class c9\n    pause\nend\n",
     "qoscnv_create_qosgrp_classmap(): 618: Could not find class-map for type 4 name c9; aborting\n"
     "qoscnv_rewrite_maps(): could not create type network-qos class-map for policy-map p\n"},
    {to_typed, "\nclass-map a\nclass-map b\xFF\npolicy-map p\n  class b\xFF\n    priority\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 27\n"
     "qoscnv_rewrite_maps(): could not create type queuing class-map for policy-map p\n"},
    {to_typed, "\nclass-map a\npolicy-map p\xFF\n  class a\n    priority\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 27\n"
     "qoscnv_rewrite_maps(): could not create type queuing policy-map for policy-map p\xFF\n"},
    {to_typed, "\nclass-map a\npolicy-map p\n  class a\n    priority\n",
     "qoscnv_create_qosgrp_policymap(): Could not find policy-maps; aborting\n"
     "qoscnv_rewrite_maps(): could not create type queuing policy-map for policy-map p\n"},
    {to_typed,
     "\nclass-map a\nclass-map b\npolicy-map " + long_name + "\n  class a\n    priority\nend\n",
     "qoscnv_create_qosgrp_policymap(): Unexpected text: policy-map type queuing " +
         long_name.substr(5) + "\n"},
    // Existing policy-maps become type qos.
    {to_typed, "\nclass-map a\nclass-map b\npolicy-mapX y\n  class a\n    priority\nend\n",
     "qoscnv_alter_existing_policymap(): unexpected format for policy-map; aborting\n"},
    {to_typed,
     "\nclass-map c\nclass-map d\ninterface 1\n  description policy-map zz\n  class c\n"
     "    priority\nend\n",
     "qoscnv_rewrite_maps(): could not create type queuing policy-map for policy-map zz\n"},
    {to_typed,
     "\nclass-map a\nclass-map b\npolicy-map p\n  class b\n    set qos-group 2\n"
     "  class c9\n    set qos-group 3\n  class a\n    priority\nend\n",
     "qoscnv_classmap_to_qosgrp(): did not find matching qosgrp for class-map c9\n"
     "qoscnv_alter_existing_policymap(): Could not find qos-group for c9; aborting\n"
     "qoscnv_rewrite_maps(): could not alter existing policy-map p\n"},
    {to_typed, "\nclass-map a\npolicy-mapX y\n  class a\n    set qos-group 2\nend\n",
     "qoscnv_alter_existing_type_qos_policymap(): unexpected format for policy-map; aborting\n"
     "qoscnv_rewrite_maps(): could not alter existing type qos policy-map X\n"},
    {to_typed, "\nclass-map a\npolicy-map p\n  class a\n    set qos-group 2\n   x  class",
     "qoscnv_alter_existing_type_qos_policymap(): unexpected format for class; aborting\n"},
    // Attachments.
    {to_typed, "\nclass-map a\ninterface 1\n  service-policy input p9\n",
     "qoscnv_rewrite_attachments(): service-policy p9 is on an interface: dir input\n"
     "qoscnv_rewrite_attachments(): could not find policy-map for service-policy p9; aborting\n"},
    {to_typed, "\nclass-map a\ninterface 1\n  service-policy bidirectional p\n",
     "qoscnv_rewrite_attachments(): unexpected format for service-policy; aborting\n"},
    {to_typed, "\nclass-map a\ninterface 1\n  service-policy\n",
     "qoscnv_rewrite_attachments(): unexpected format for service-policy; aborting\n"},
    {to_typed, "\nclass-map a\ninterface 1\n  service-policy input " + long_word + "\n",
     "qoscnv_rewrite_attachments(): Unexpected text: service-policy input " + cut_word.substr(21) +
         "\n"},
    {to_typed,
     "\nclass-map a\nclass-map b\npolicy-map " + long_name +
         "\n  class a\n    set qos-group 2\nsystem qos\n  service-policy " + long_name + "\n",
     "qoscnv_rewrite_attachments(): Unexpected text:   service-policy type qos input " +
         long_name.substr(13) + "\n"},
    {to_typed, untyped_with_attachments(100),
     "qoscnv_insert_text(): refusing to insert text of length "},
    // Typed maps are read and rebuilt.
    {to_untyped, "\npolicy-map type qos " + long_word + "\n",
     "qoscnv_build_policymaps_db_downgrade(): Unexpected text: " + cut_word + "\n"},
    {to_untyped, "\npolicy-map type qos p\n  class",
     "qoscnv_build_policymaps_db_downgrade(): unexpected class format; aborting\n"},
    {to_untyped, "\nclass-map type qos " + long_word + "\n",
     "qoscnv_identify_empty_classmaps(): Unexpected text: " + cut_word + "\n"},
    {to_untyped, "\nclass-map " + long_word + "\n  match x\n",
     "qoscnv_remove_empty_classmaps(): Unexpected text: " + cut_word + "\n"},
    {to_untyped, "\npolicy-map type qos p\xFF\n  class a\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 14\n"},
    {to_untyped, "\npolicy-map type qos p\xFF\nend\n",
     "qoscnv_write_policymaps(): writing empty policy-map p\xFF\n"
     "qoscnv_insert_text(): refusing to insert text of length 14\n"},
    {to_untyped, "\npolicy-map type qos p\n  class a\xFF\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 11\n"},
    {to_untyped, "\npolicy-map type queuing p\n  class type queuing a\n    priority \xFF\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 15\n"},
    // Attachments that stand twice.
    {to_untyped, "\nsystem qos\n  service-policy",
     "qoscnv_delete_duplicate_attachments(): unexpected service-policy format; aborting\n"
     "qoscnv_delete_duplicate_attachments(): could not delete duplicate attachments on system "
     "qos\n"},
    {to_untyped, "\nsystem qos\n  service-policy input " + long_word + "\n",
     "qoscnv_delete_duplicate_attachments(): Unexpected text: service-policy input " +
         cut_word.substr(21) + "\n"},
    {to_untyped, "\nsystem qos\n  service-policy p\xFF\n",
     "qoscnv_insert_text(): refusing to insert text of length 20\n"},
    {to_untyped, "\nclass-map c\n  match cos 1\ninterface 1\n  service-policy p\n",
     "qoscnv_delete_duplicate_attachments(): Unexpected service-policy direction p\n"
     "qoscnv_delete_duplicate_attachments(): Freeing block of memory at <ptr>\n"
     "qoscnv_delete_duplicate_attachments(): Freeing block of memory at <ptr>\n"
     "qoscnv_delete_duplicate_attachments(): Freeing block of memory at <ptr>\n"
     "qoscnv_delete_duplicate_attachments(): could not delete duplicate attachments on "
     "interfaces\n"},
    // Between typed releases.
    {mtu_up, "\nclass-map type qos " + long_word + "\n",
     "qoscnv_identify_classmaps_for_type(): Unexpected text: " + cut_word + "\n"},
    {mtu_up, "\npolicy-map type network-qos p\xFF\n  class type network-qos a\n    mtu 1\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 31\n"
     "qoscnv_rewrite_maps_4_2_1(): could not create type network-qos policy-map for policy-map "
     "p\xFF\n"},
    {mtu_up, "\npolicy-map type network-qos p\n  class type network-qos a\n    mtu 1\n",
     "qoscnv_create_qosgrp_policymap_4_2_1(): Could not find policy-maps; aborting\n"},
    {mtu_up, "\npolicy-map type network-qos p\n  class type network-qos a\xFF\n    mtu 1\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 28\n"},
    {mtu_up, "\npolicy-map type network-qos p\n  class type network-qos a\n    pause \xFF\nend\n",
     "qoscnv_insert_text(): refusing to insert text of length 12\n"},
    {mtu_down, "\nclass-map", "qoscnv_insert_text(): refusing to insert text of length 39\n"},
    {mtu_down, "\nclass-map\n", "qoscnv_insert_text(): refusing to insert text of length 36\n"},
    {mtu_down, "\nclass-map type qos match-any " + long_word + "\n",
     "qoscnv_remove_match_any(): Unexpected text: " + cut_word + "\n"},
};

struct passed_by_t {
    row_t row;
    std::string after;
};

const passed_by_t passed_by[] = {
    {{to_typed,
      "\nclass-map class-default\npolicy-map p\n  class class-default\nsystem qos\n"
      "  service-policy p\nend\n",
      "qoscnv_assign_qosgrp_to_sysqos_policy(): Assigned qos-group 0 to class-map class-default\n"
      "qoscnv_assign_qosgrp_to_sysqos_policy(): Assigned qos-group 0 to class-map class-default "
      "type "
      "1\n"},
     "\nclass-map type qos class-default\npolicy-map type qos p\n  class type qos class-default\n"
     "system qos\n  service-policy type qos input p\nend\n"},
    {{to_typed, "\nclass-map c\nsystem qos\n",
      "qoscnv_assign_qosgrp_to_sysqos_policy(): no more service-policies in the configuration\n"},
     "\nclass-map type qos c\nsystem qos\n"},
    {{to_typed,
      "\npolicy-map p\n  class a\n    set qos-group 2\nsystem qos\ninterface 1\n  service-policy "
      "input p\n",
      "qoscnv_assign_qosgrp_to_sysqos_policy(): No more service-policies on system qos\n"},
     "\npolicy-map type qos p\n  class type qos a\n    set qos-group 2\nsystem qos\ninterface 1\n"},
    // Only at a line start is it a policy-map.
    {{to_typed,
      "\nclass-map c\ninterface 1\n  description policy-map zz\n  class c\n    set qos-group "
      "2\nend\n",
      "qoscnv_rewrite_maps(): policy-map zz does not have actions of type queuing or type "
      "unified-fabric\n"
      "qoscnv_alter_existing_type_qos_policymap(): Altering existing policy-map zz to be of type "
      "qos ...\n"},
     "\nclass-map type qos c\ninterface 1\n  description policy-map zz\n  class c\n    set "
     "qos-group 2\nend\n"},
    {{to_typed, "\nclass-map a\nclass-map b\npolicy-map p\n  class a\n    mtu big\nend\n",
      "qoscnv_create_qosgrp_policymap(): convert  big\n, ver to 4.2(1) 0, gt 4.2(1) 0, ge 5.0(2) "
      "0\n"},
     "\nclass-map type qos a\nclass-map type qos b\nclass-map type network-qos a\n\n"
     "policy-map type qos p\npolicy-map type network-qos p\n  class type network-qos a\n"
     "    mtu big\nend\n"},
    {{to_untyped, "\nclass-map type qos a\n  match cos 1\nend\n",
      "qoscnv_write_policymaps(): Writing out policymaps from database ...\n"},
     "\nclass-map a\n  match cos 1\nend\n"},
    {{to_untyped, "\nclass-map a\n  match cos 1\nclass-map b\nend\n",
      "qoscnv_remove_empty_classmaps(): deleting empty class-map name b\n"},
     "\nclass-map a\n  match cos 1\nend\n"},
    {{to_untyped, "\nsystem qos\n  service-policy input p\n  service-policy output q\n",
      "qoscnv_delete_duplicate_attachments(): found service-policy name q\n"},
     "\nsystem qos\n  service-policy p\n"},
    // The stanza ends where the next line that is not indented begins.
    {{to_untyped, "\nsystem qos\n  service-policy input p\n  x\nservice-policy input q\nend\n",
      "qoscnv_delete_duplicate_attachments(): No more service-policies on system qos\n"},
     "\nsystem qos\n  service-policy p\n  x\nservice-policy input q\nend\n"},
    // An attachment that has no typed form goes, and the next stanza begins where it did.
    {{to_typed,
      "\nclass-map a\nclass-map b\npolicy-map p\n  class a\n    priority\npolicy-map q\n"
      "  class b\n    set qos-group 2\nsystem qos\n  service-policy p\ninterface 1\n"
      "  service-policy input p\n  service-policy output q\ninterface 2\n"
      "  service-policy input p\nend\n",
      "qoscnv_rewrite_attachments(): service-policy q is on an interface: dir output\n"},
     "\nclass-map type qos a\nclass-map type qos b\nclass-map type queuing a\n"
     "  match qos-group 2\npolicy-map type qos p\n  class type qos a\n    set qos-group 2\n"
     "policy-map type qos q\n  class type qos b\n    set qos-group 2\n"
     "policy-map type queuing p\n  class type queuing a\n    priority\nsystem qos\n"
     "  service-policy type qos input p\n  service-policy type queuing input p\n"
     "  service-policy type queuing output p\ninterface 1\n"
     "  service-policy type qos input p\n  service-policy type queuing input p\ninterface 2\n"
     "  service-policy type qos input p\n  service-policy type queuing input p\nend\n"},
    {{to_typed,
      "\nclass-map a\npolicy-map p\n  class class-all-flood\n    set qos-group 2\n  class a\n"
      "    set qos-group 3\npolicy-map q\n  class a\n    set qos-group 2\nend\n",
      "qoscnv_alter_existing_type_qos_policymap(): Deleted special class class-all-flood\n"},
     "\nclass-map type qos class-all-flood\nclass-map type qos a\npolicy-map type qos p\n"
     "  class type qos class-all-flood\n  class type qos a\n    set qos-group 3\n"
     "policy-map type qos q\n  class type qos a\n    set qos-group 2\nend\n"},
    {{to_typed, "\nclass-map a\npolicy-map p\n  class a\n    police 5\nend\n",
      "qoscnv_convert_action_to_pmap_type(): Unexpected action; ignoring\n"},
     "\nclass-map type qos a\npolicy-map type qos p\n  class type qos a\n    police 5\nend\n"},
    // Only a line directly below a map line is its description.
    {{to_untyped, "\nclass-map type qos a\n!\n  description x\nend\n",
      "qoscnv_remove_description(): found class-map at byte 0\n"},
     "\nclass-map a\n!\n  description x\nend\n"},
    // The description of one map is looked for once, and stays where it is not the first line.
    {{to_untyped,
      "\nclass-map type qos a\n  match cos 1\n  description x\nclass-map type qos b\n"
      "  match cos 2\nend\n",
      "qoscnv_remove_description(): found class-map at byte 51\n"},
     "\nclass-map a\n  match cos 1\n  description x\nclass-map b\n  match cos 2\nend\n"},
    {{to_untyped,
      "\nclass-map type qos a\n  match cos 1\nsystem qos\n  service-policy type queuing input p\n"
      "policy-map type queuing p\n  class type queuing a\n    priority\nend\n",
      "qoscnv_write_policymaps(): writing policy-map for p\n"},
     "\nclass-map a\n  match cos 1\nsystem qos\n  service-policy p\n"
     "policy-map p\n  class a\n    priority\nend\n"},
    // The first header of a name has no body, the second one has.
    {{to_typed, "\nclass-map a\npolicy-map p\npolicy-map p\n  class a\n    set qos-group 2\nend\n",
      "qoscnv_alter_existing_type_qos_policymap(): found policy-map name p\n"},
     "\nclass-map type qos a\npolicy-map type qos p\npolicy-map type qos p\n"
     "  class a\n    set qos-group 2\nend\n"},
    {{to_typed, "\nclass-map c\npolicy-map p\n" + many_classes("") + "end\n",
      "qoscnv_rewrite_maps(): policy-map p does not have actions of type queuing or type "
      "unified-fabric\n"},
     "\nclass-map type qos c\npolicy-map type qos p\n" + many_classes("type qos ") + "end\n"},
    {{mtu_down, "hostname a\n",
      "qoscnv_remove_match_any(): qoscnv_remove_match_any(2094): ver from_ge_5_0_2 1, to_eq_4_1_3 "
      "1\n"},
     "hostname a\n"},
    {{mtu_down, "\nclass-map type  qos match-any a\n  match cos 1\nend\n",
      "qoscnv_remove_match_any(): \"type qos\" not found for type qos class-map name a\n"},
     "\nclass-map type qos class-ip-multicast\n\nclass-map type qos class-all-flood\n\n"
     "class-map type  qos match-any a\n  match cos 1\nend\n"},
    {{mtu_down, "\nclass-map type qos a\n",
      "qoscnv_remove_match_any(): found class-map at byte 75\n"},
     "\nclass-map type qos class-ip-multicast\n\nclass-map type qos class-all-flood\n\n"
     "class-map type qos a\n"},
    {{mtu_up, "\nclass-map type  qos a\n  match cos 1\nclass-map b\nend\n",
      "qoscnv_identify_classmaps_for_type(): \"type qos\" for type qos class-map name a not "
      "found\n"},
     "\nclass-map type  qos a\n  match cos 1\nclass-map b\nend\n"},
};

support::conversion_t convert(const row_t &row) {
    return support::convert(support::service_named("qos"), row.text, row.releases.from,
                            row.releases.to);
}

// True when behind the messages the failure is only handed on.
bool ends_with(const std::string &log, const std::string &messages) {
    static const std::regex handed_on(
        "(\\w+\\(\\): could not [^\n]*\n)?(qosmgr_convert_\\w+\\(\\): [^\n]*\n)?"
        "ipqosmgr_infra_convert_startup\\(\\): Called [^\n]* returned 0xffffffff\n");
    const size_t at = log.find(messages);
    if (at == log.npos)
        return false;
    const size_t behind = at + messages.size();
    const size_t line = log[behind - 1] == '\n' ? behind : log.find('\n', behind) + 1;
    return std::regex_match(log.substr(line), handed_on);
}

} // namespace

TEST(qos_messages, what_ends_a_conversion) {
    for (const row_t &row : refused) {
        const auto result = convert(row);
        EXPECT_EQ(result.status, -1) << row.text;
        EXPECT_EQ(result.file, row.text);
        EXPECT_TRUE(ends_with(result.log, row.messages)) << row.messages << "\nnot at the end of\n"
                                                         << result.log;
    }
}

TEST(qos_messages, what_is_passed_by) {
    for (const auto &[row, after] : passed_by) {
        const auto result = convert(row);
        EXPECT_EQ(result.status, 0) << row.text;
        EXPECT_EQ(result.file, after) << row.text;
        EXPECT_NE(result.log.find(row.messages), std::string::npos) << row.messages << "\nnot in\n"
                                                                    << result.log;
    }
}
