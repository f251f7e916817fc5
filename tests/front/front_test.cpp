// The front: which converters run, what reaches the caller, and every line of the front log.

#include "support/services.h"

#include <gtest/gtest.h>
#include <regex>
#include <unistd.h>

using support::outcome_t;

namespace {

const char *const front_log = "infra_convertascii.log";

// The log with its time stamps checked and taken off.
std::string without_stamps(const std::string &log) {
    static const std::regex stamp("(^|\n)<[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]\\d "
                                  "\\d{2}:\\d{2}:\\d{2} \\d{4}> ");
    return std::regex_replace(log, stamp, "$1");
}

outcome_t convert_all(const std::string &configuration, const char *from, const char *to,
                      bool logs_open = true) {
    const support::temporary_directory_t place;
    support::write_file(place.path() + "/ascii/system.cfg", configuration);
    const infraconvertascii_args_t args = {place.path().c_str(), "package", to, from};
    return support::run_in_process(
        [&] { return static_cast<int>(infraconvertascii_startup_all(&args)); }, logs_open);
}

std::string calling(const char *function, const char *uuid) {
    return std::string(function) + ": calling convert ASCII function for uuid = " + uuid + "\n";
}

const char *const uuids[] = {"0x1d9", "0x8b", "0x289", "0x28c", "0x2de", "0x2a6"};

} // namespace

TEST(front, all_converters_run_in_order_and_failures_do_not_stop_them) {
    // An empty file fails every converter that has something to do.
    const outcome_t outcome = convert_all("", "4.1(2)", "5.0(3)");
    std::string expected;
    for (const char *uuid : uuids) {
        expected += calling("infraconvertascii_startup_all", uuid) +
                    calling("infraconvertascii_startup", uuid) +
                    "infraconvertascii_startup_all: convert ASCII function for uuid = " + uuid +
                    " returned error 0xffffffff\n";
    }
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, expected);
    EXPECT_EQ(without_stamps(outcome.logs.at(front_log)), expected);
    EXPECT_EQ(outcome.logs.at(front_log).size(),
              expected.size() +
                  3 * std::size(uuids) * std::string("<Mon Jan  1 00:00:00 2024> ").size());
}

TEST(front, messages_go_to_standard_error_when_no_log_opens) {
    const outcome_t outcome = convert_all("hostname a\n", "4.1(3)", "4.1(3)", false);
    std::string expected;
    for (const char *uuid : uuids)
        expected += calling("infraconvertascii_startup_all", uuid) +
                    calling("infraconvertascii_startup", uuid);
    EXPECT_EQ(outcome.errors, expected);
    EXPECT_TRUE(outcome.logs.empty());
    EXPECT_EQ(outcome.output, "");
}

// Who looks for what a switch died of finds it there.
TEST(front, each_message_is_in_its_log_at_once) {
    const outcome_t outcome = support::run_in_process([]() -> int {
        const infraconvertascii_args_t args = {nullptr, "package", "5.0(3)", "4.0(1)"};
        npiv_debug = 1;
        infraconvertascii_startup(SRVUUID_NPIVP, nullptr, &args);
        _exit(0);
    });
    EXPECT_EQ(without_stamps(outcome.logs.at(front_log)),
              calling("infraconvertascii_startup", "0x289"));
    EXPECT_TRUE(outcome.logs.at("npiv.log")
                    .ends_with("npiv_path_to_asciicfg(): failed to expand path into ASCII "
                               "configuration location: Invalid "
                               "argument\n"
                               "npiv_read_ascii_file(): failed to write out uncompress command: "
                               "Invalid argument\n"))
        << outcome.logs.at("npiv.log");
}

TEST(front, unknown_services_and_missing_arguments_run_nothing) {
    const outcome_t outcome = support::run_in_process([] {
        const infraconvertascii_args_t args = {"/nowhere", "package", "5.0(3)", "4.0(1)"};
        convertascii_ret_value_t result = {1, 2};
        infraconvertascii_startup(0, &result, &args);
        infraconvertascii_startup(474, &result, &args);
        const bool untouched = result.uuid == 1 && result.syserr == 2;
        infraconvertascii_startup(649, nullptr, nullptr);
        infraconvertascii_startup_all(nullptr);
        libinfraconvertascii_init(-7);
        return untouched ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "infraconvertascii_startup: Invalid or NULL argument passed\n"
                              "infraconvertascii_startup_all: Invalid or NULL argument passed\n"
                              "libinfraconvertascii_init: infraconvertascii_mts_q = -7\n");
}

TEST(front, logs_stay_open_across_calls_but_for_the_association_converter) {
    const support::temporary_directory_t place;
    support::write_file(place.path() + "/ascii/system.cfg", "vlan 5\n  fcoe\n");
    const outcome_t outcome = support::run_in_process([&] {
        const infraconvertascii_args_t args = {place.path().c_str(), "package", "5.0(3)", "4.1(3)"};
        for (uuid_t uuid : {SRVUUID_NPIVP, SRVUUID_NPIVP, SRVUUID_ASSOC_MGR, SRVUUID_ASSOC_MGR})
            infraconvertascii_startup(uuid, nullptr, &args);
        return 0;
    });
    const std::string npiv = outcome.logs.at("npiv.log");
    EXPECT_EQ(npiv.find("npiv_log_init(): file opened sucessfully\n"), 0u);
    EXPECT_NE(npiv.find("npiv_log_init(): file already opened\n"), npiv.npos);
    const std::string assoc = outcome.logs.at("assoc_ascii_cnv.log");
    EXPECT_EQ(assoc.find("file opened sucessfully\n"), 0u);
    EXPECT_EQ(assoc.rfind("file opened sucessfully\n"), 0u);
}

TEST(front, switches_that_are_not_exactly_one_write_nothing) {
    for (boolean debug_switch : {0u, 2u}) {
        for (const auto &service : support::services()) {
            if (!service.debug_switch)
                continue;
            const auto result =
                support::convert(service, "feature npiv\n", "4.0(1)", "5.0(3)", debug_switch);
            EXPECT_EQ(result.log, "") << service.name;
            EXPECT_EQ(result.process.output, "feature npiv\n") << service.name;
        }
    }
}
