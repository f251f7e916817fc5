// What becomes of a call when a converter, or the program that runs it, does the worst.

#include "base/errors.h"
#include "conversion/installer_call.h"
#include "infraconvert/runner/children.h"
#include "infraconvert/workspace.h"

#include <csignal>
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace infraconvert;
using support::children_of;
using support::has_ended;

const std::vector<const service_t *> three = services_named({"qos", "npiv", "satmgr"});
const std::string qos = "473", npiv = "649", satmgr = "678";

call_t call_with(const std::string &text, bool wants_logs = false) {
    return {std::make_shared<const std::string>(text),
            {"4.1(2)", "5.0(3)"},
            three,
            wants_logs,
            std::chrono::seconds(1)};
}

// What the services did, in words: "ok", "-1" or the trouble.
std::string told(const call_result_t &result) {
    std::string words;
    for (const call_step_t &step : result.steps)
        words += (words.empty() ? "" : ", ") + (!step.came_back()  ? step.trouble
                                                : step.status == 0 ? "ok"
                                                                   : "-1");
    return words;
}

pid_t runner_of_this_process() {
    const auto children = children_of(getpid());
    return children.empty() ? 0 : children[0];
}

TEST(call, what_a_service_does_is_its_own_doing) {
    const char *const crashed = "was killed by signal 11 (Segmentation fault)";
    const char *const hung = "did not end within 1 seconds and was stopped";
    const struct {
        std::string configuration, told, services; // those whose text came back
    } rows[] = {
        {"", "ok, ok, ok", "473 649 678 "},
        {"649 crash", std::string("ok, ") + crashed + ", ok", "473 678 "},
        {"473 crash\n678 crash", crashed + std::string(", ok, ") + crashed, "649 "},
        {"649 crash later\n678 crash later", "ok, ok, ok", "473 649 678 "},
        {"649 fail", "ok, -1, ok", "473 678 "},
        {"649 fail later", "ok, ok, ok", "473 649 678 "},
        {"473 hang", hung + std::string(", ok, ok"), "649 678 "},
        {"678 hang", std::string("ok, ok, ") + hung, "473 649 "},
#ifndef __SANITIZE_ADDRESS__ // under which memory has no end
        {"649 take all memory", "ok, -1, ok", "473 678 "},
#endif
    };
    for (const auto &row : rows) {
        for (const bool wants_logs : {false, true}) {
            if (wants_logs && support::contains(row.configuration, "hang"))
                continue; // another two seconds
            const std::string text = row.configuration + "\n";
            const call_result_t result = call_installer(call_with(text, wants_logs));
            EXPECT_EQ(told(result), row.told) << row.configuration;
            std::string services = result.steps.back().after->substr(text.size());
            std::replace(services.begin(), services.end(), '\n', ' ');
            EXPECT_EQ(services, row.services) << row.configuration;
            for (const call_step_t &step : result.steps) {
                EXPECT_EQ(step.log, step.status == 0 ? "" : "npiv_x(): failed to write\n");
            }
        }
    }
}

TEST(call, threads_do_not_meet) {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 6; t++) {
        threads.emplace_back([t] {
            for (int i = 0; i < 20; i++) {
                const std::string text = std::to_string(t) + (i % 5 ? "\n" : "\n649 crash\n");
                const call_result_t result = call_installer(call_with(text));
                EXPECT_EQ(*result.steps[2].after,
                          text + qos + '\n' + (i % 5 ? npiv + '\n' : "") + satmgr + '\n');
            }
        });
    }
}

TEST(call, a_text_of_many_pieces_comes_back_whole) {
    std::string text;
    while (text.size() < 3'000'000)
        text += "interface Ethernet1/" + std::to_string(text.size()) + '\n';
    const call_result_t result = call_installer(call_with(text));
    EXPECT_EQ(*result.steps[2].after, text + qos + '\n' + npiv + '\n' + satmgr + '\n');
}

// A killed infraconvert-run takes its children along, and the next call starts another.
TEST(call, another_program_takes_over_from_one_that_was_killed) {
    EXPECT_EQ(told(call_installer(call_with("x\n"))), "ok, ok, ok");
    const pid_t first = runner_of_this_process();
    ASSERT_NE(first, 0);
    kill(first, SIGKILL);
    EXPECT_EQ(told(call_installer(call_with("x\n"))), "ok, ok, ok");
    EXPECT_NE(runner_of_this_process(), first);

    // In the middle of a call, and again.
    std::jthread killer([] {
        for (pid_t last = 0, killed = 0; killed < 2;) {
            const pid_t now = runner_of_this_process();
            const auto converters = now ? children_of(now) : std::vector<pid_t>{};
            if (now == last || converters.empty())
                continue;
            kill(now, SIGKILL);
            killed++;
            last = now;
            while (!has_ended(converters[0]))
                continue;
        }
    });
    auto endless = call_with("473 hang\n");
    endless.limit = std::chrono::minutes(1);
    try {
        call_installer(endless);
        FAIL();
    } catch (const run_error_t &e) {
        EXPECT_STREQ(e.what(), "infraconvert-run, which runs the converters, ended twice: it was "
                               "killed by signal 9 (Killed)");
    }
}

} // namespace
