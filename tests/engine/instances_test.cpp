// Every instance's own names lead to its own text, log and releases.

#include "assoc/assoc_engine.h"
#include "fc_port_sec/fcportsec_engine.h"
#include "fwm/fwmcnv_engine.h"
#include "ipqosmgr/qosmgrcnv_engine.h"
#include "npiv/npiv_engine.h"
#include "platform/calls.h"
#include "satmgr/satcnv_engine.h"
#include "support/converter_process.h"

#include "include/libinfraconvertascii.h"

#include <gtest/gtest.h>

using engine::position_t;

namespace {

struct names_t {
    std::string prefix;
    engine::engine_t &instance;
    const char *log;
    void (*log_init)(), (*log_cleanup)();
    syserr_t (*read_ascii_file)(const char *);
    void (*delete_text)(position_t, uint32_t);
    bool (*insert_text)(position_t, std::string_view);
    // Null where the instance has none.
    syserr_t (*write_ascii_file)(const char *) = nullptr;
    void (*print_ascii_file)() = nullptr;
    syserr_t (*remove_regexp)(const char *, uint32_t, uint32_t) = nullptr;
    syserr_t (*remove_substring)(const char *) = nullptr;
    position_t (*nextline)(position_t) = nullptr;
    bool (*nextstanza)(position_t) = nullptr;
    position_t (*goto_nextstanza)(position_t) = nullptr;
    std::string (*getline)(position_t, uint32_t) = nullptr;
};

const names_t instances[] = {
    {"qoscnv", qoscnv_engine, "qoscnv.log", qoscnv_log_init, qoscnv_log_cleanup,
     qoscnv_read_ascii_file, qoscnv_delete_text, qoscnv_insert_text, qoscnv_write_ascii_file,
     qoscnv_print_ascii_file, qoscnv_remove_regexp, qoscnv_remove_substring, qoscnv_nextline,
     qoscnv_nextstanza, qoscnv_goto_nextstanza, qoscnv_getline},
    {"fcportsec", fcportsec_engine, "fcportsec.log", fcportsec_log_init, fcportsec_log_cleanup,
     fcportsec_read_ascii_file, fcportsec_delete_text, fcportsec_insert_text,
     fcportsec_write_ascii_file, fcportsec_print_ascii_file, fcportsec_remove_regexp,
     fcportsec_remove_substring, fcportsec_nextline, fcportsec_nextstanza,
     fcportsec_goto_nextstanza, fcportsec_getline},
    {"npiv", npiv_engine, "npiv.log", npiv_log_init, npiv_log_cleanup, npiv_read_ascii_file,
     npiv_delete_text, npiv_insert_text, npiv_write_ascii_file, npiv_print_ascii_file,
     npiv_remove_regexp, npiv_remove_substring, npiv_nextline, npiv_nextstanza,
     npiv_goto_nextstanza, npiv_getline},
    {"fwmcnv", fwmcnv_engine, "fwmcnv.log", fwmcnv_log_init, fwmcnv_log_cleanup,
     fwmcnv_read_ascii_file, fwmcnv_delete_text, fwmcnv_insert_text, fwmcnv_write_ascii_file,
     fwmcnv_print_ascii_file, fwmcnv_remove_regexp, fwmcnv_remove_substring, fwmcnv_nextline,
     fwmcnv_nextstanza, fwmcnv_goto_nextstanza, fwmcnv_getline},
    {"satcnv", satcnv_engine, "satcnv.log", satcnv_log_init, satcnv_log_cleanup,
     satcnv_read_ascii_file, satcnv_delete_text, satcnv_insert_text, satcnv_write_ascii_file,
     satcnv_print_ascii_file, satcnv_remove_regexp, satcnv_remove_substring},
    {"assoc", assoc_engine, "assoc_ascii_cnv.log", assoc_log_init, assoc_log_cleanup,
     assoc_read_ascii_file, assoc_delete_text, assoc_insert_text},
};

// The edits and looks of one instance on "policy-map a\n  b\n!\ninterface\n".
void use(const names_t &names, const std::string &place) {
    ASSERT_EQ(names.read_ascii_file(place.c_str()), 0u);
    if (names.nextline) {
        EXPECT_EQ(names.nextline(2), 13u);
        EXPECT_EQ(names.nextline(20), 29u);
        EXPECT_EQ(names.nextline(29), engine::nowhere);
        EXPECT_EQ(names.goto_nextstanza(0), 19u);
        EXPECT_EQ(names.goto_nextstanza(14), 19u);
        EXPECT_EQ(names.goto_nextstanza(20), engine::nowhere);
        EXPECT_TRUE(names.nextstanza(0) && names.nextstanza(19));
        EXPECT_FALSE(names.nextstanza(13) || names.nextstanza(17) || names.nextstanza(29));
        EXPECT_EQ(names.getline(0, 8), "policy-");
        EXPECT_EQ(names.getline(12, 8), "");
        EXPECT_EQ(names.getline(29, 8), "\xFF");
    }
    names.delete_text(17, 2);
    EXPECT_TRUE(names.insert_text(0, "x\n"));
    if (names.remove_regexp) {
        EXPECT_EQ(names.remove_regexp("  b", 0, 1), 0u);
        EXPECT_EQ(names.remove_substring("map"), 0u);
        names.print_ascii_file();
        EXPECT_EQ(names.write_ascii_file(place.c_str()), 0u);
    } else {
        EXPECT_EQ(names.instance.text->copy(0, 99), "x\npolicy-map a\n  b\ninterface\n");
    }
}

} // namespace

TEST(instances, names_lead_to_the_own_text_and_log) {
    for (const names_t &names : instances) {
        const support::temporary_directory_t place;
        const std::string file = place.path() + "/ascii/system.cfg";
        support::write_file(file, "policy-map a\n  b\n!\ninterface\n");
        const auto outcome = support::run_in_process([&] {
            qosmgrcnv_debug = fwmcnv_debug = 1;
            names.log_init();
            use(names, place.path());
            names.log_cleanup();
            return ::testing::Test::HasFailure();
        });
        EXPECT_EQ(outcome.status, 0) << names.prefix << outcome.output;
        const std::string log = outcome.logs.count(names.log) ? outcome.logs.at(names.log) : "";
        EXPECT_EQ(outcome.logs.size(), 1u);
        if (!names.remove_regexp) {
            EXPECT_EQ(log.rfind("file opened sucessfully\nReading ASCII file ...\n", 0), 0u);
            continue;
        }
        EXPECT_EQ(support::read_file(file), "x\npolicy- a\ninterface\n") << names.prefix;
        EXPECT_EQ(log.rfind(names.prefix + "_log_init(): file opened sucessfully\n", 0), 0u) << log;
        EXPECT_NE(log.find(names.prefix + "_remove_regexp(): removing substring \"map\" ...\n"),
                  log.npos);
        const std::string shown = "x\npolicy- a\ninterface\n";
        EXPECT_EQ(outcome.output, shown + shown);
    }
}

TEST(instances, each_question_about_a_pair_of_releases) {
    using read_t = bool(const char *, const char *);
    struct {
        read_t *read;
        bool (*question)();
        const char *from, *to;
        bool answer;
    } const rows[] = {
        {qoscnv_read_versions, qoscnv_ver_from_eq_null, "0.0(0)", "4.1(3)", true},
        {qoscnv_read_versions, qoscnv_ver_to_gt_4_2_1, "4.1(3)", "4.2(1)", false},
        {qoscnv_read_versions, qoscnv_ver_to_eq_5_0_3, "5.0(3)", "5.0(2)", false},
        {qoscnv_read_versions, qoscnv_ver_from_eq_5_0_3, "5.0(3)U2(1)", "5.0(3)U1(1)", true},
        {qoscnv_read_versions, qoscnv_subver_to_eq_2, "5.0(3)U1(1)", "5.0(3)U2(1)", true},
        {qoscnv_read_versions, qoscnv_subver_from_eq_1, "5.0(3)U1(1)", "5.0(3)U2(1)", true},
        {fcportsec_read_versions, fcportsec_ver_from_eq_4_1_3_K_2_1, "4.1(3)K2(1)", "4.2(1)", true},
        {fcportsec_read_versions, fcportsec_ver_to_eq_4_1_3_K_2_1, "4.2(1)", "4.1(3)K2(2)", false},
        {fcportsec_read_versions, fcportsec_ver_from_gt_4_1_3_K_2_1, "4.1(3)K2(1)", "4.2(1)",
         false},
        {fcportsec_read_versions, fcportsec_ver_from_lt_4_1_3_K_2_1, "4.1(3)K1(9)", "4.2(1)", true},
        {fcportsec_read_versions, fcportsec_ver_to_lt_4_1_3_K_1_1, "4.2(1)", "4.1(3)K1(1)", false},
        {npiv_read_versions, npiv_ver_from_lt_4_1_3_K_2_1, "4.1(3)K1(1)", "4.2(1)", false},
        {npiv_read_versions, npiv_ver_from_gt_4_1_3_K_2_1, "4.1(3)K2(2)", "4.0(1)", true},
        {npiv_read_versions, npiv_ver_from_gt_4_1_3_K_2_1, "4.1(3)K2(1)", "4.0(1)", false},
        {npiv_read_versions, npiv_ver_to_gt_4_1_3_K_2_1, "4.0(1)", "4.1(3)K2(1)", false},
        {fwmcnv_read_versions, fwmcnv_ver_to_lt_4_1_3, "4.2(1)", "4.0(1)", false},
        {fwmcnv_read_versions, fwmcnv_ver_from_lt_4_1_3, "3.9(9)", "4.0(1)", true},
        {fwmcnv_read_versions, fwmcnv_ver_from_eq_4_1_3, "4.1(3)K9(1)", "4.0(1)", true},
        {fwmcnv_read_versions, fwmcnv_ver_to_eq_4_2_1, "4.1(3)", "4.2(1)", true},
        {fwmcnv_read_versions, fwmcnv_ver_from_eq_4_2_1, "4.2(2)", "4.1(3)", false},
        {satcnv_read_versions, satcnv_ver_same, "5.0(3)K1(1)", "5.0(3)K1(2)", true},
        {satcnv_read_versions, satcnv_swithport_swap_needed, "5.0(2)", "5.0(3u)", true},
    };
    for (const auto &row : rows) {
        row.read(row.from, row.to);
        EXPECT_EQ(row.question(), row.answer) << row.from << " to " << row.to;
    }
}

TEST(platform, says_a_status_in_words) {
    EXPECT_STREQ(platform::status_text(0), "success");
    EXPECT_STREQ(platform::status_text(1), "error 0x1");
}
