// A change window on a machine that fails it: no room, no memory, writes that are cut short by a
// kill. The command is stopped at its system calls.

#include "infraconvert/commands/change_window.h"
#include "infraconvert/traced_command.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <set>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using support::arguments_t;
using support::change_window_t;
using support::contains;
using support::converted;
using support::original;
using call_t = support::traced_command_t::call_t;
using fate_t = support::traced_command_t::fate_t;
using judge_t = std::function<fate_t(const call_t &, const std::string &)>;

bool writes(const call_t &call) { return call.entry.nr == SYS_write; }

class faults_t : public change_window_t {
  protected:
    void SetUp() override {
        if (!support::traced_command_t::can_judge)
            GTEST_SKIP() << "the registers of this processor are not known";
    }

    support::traced_command_t traced(arguments_t arguments) const {
        arguments.insert(arguments.end(), {"--jobs", "1"});
        return {here->path(""), here->path(""), arguments};
    }

    // What it prints, and its exit status.
    support::result_t run(const arguments_t &arguments, const judge_t &judge) const {
        support::traced_command_t command = traced(arguments);
        command.output = open(here->path("shown").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
        const int status = command.run(judge);
        close(command.output);
        const std::string out = here->read("shown");
        fs::remove(here->path("shown"));
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, ""};
    }

    arguments_t saving = {"preview", "--from",      "4.1(3)K2(1)", "--to",
                          "4.1(2)",  "--save-plan", "w.json",      "site"};
};

TEST_F(faults_t, what_finds_no_room_for_its_original_is_not_converted_and_the_rest_is) {
    here->write("site/a.cfg", original + "hostname a\n");
    here->write("site/b.cfg", original + "hostname b\n");
    ASSERT_EQ(save_plan().status, 0);
    int failed = 0;
    const auto full = run({"convert", "--plan", "w.json"},
                          [&](const call_t &call, const std::string &file) -> fate_t {
                              const bool first =
                                  writes(call) && contains(file, "/originals/") && failed++ == 0;
                              return {.error = first ? ENOSPC : 0};
                          });
    EXPECT_EQ(failed, 2); // one for each original
    EXPECT_EQ(full.status, 6) << full.out;
    EXPECT_TRUE(contains(full.out, "  converted now      1\n")) << full.out;
    EXPECT_TRUE(contains(full.out, "  blocked: its original finds no place in "
                                   "w.json.private/originals: No space left on device\n"
                                   "    site/a.cfg\n"))
        << full.out;
    EXPECT_EQ(here->read("site/a.cfg"), original + "hostname a\n");
    EXPECT_EQ(here->read("site/b.cfg"), converted + "hostname b\n");
    EXPECT_EQ(states(with_plan("convert", {"--json"})), "converted! converted");
    EXPECT_EQ(with_plan("undo").status, 0);
    EXPECT_EQ(here->read("site/a.cfg"), original + "hostname a\n");
}

// The file has two names, so it is written in place: each of the calls that write it is the last
// one of a run, whole and cut short.
TEST_F(faults_t, what_is_written_in_place_is_brought_back_from_every_write) {
    here->write("site/two.cfg", original);
    fs::create_hard_link(here->path("site/two.cfg"), here->path("second name"));
    ASSERT_EQ(save_plan().status, 0);
    std::set<std::string> seen;
    const auto kill_at = [&](const char *verb, int at, size_t most) {
        int reached = 0;
        run({verb, "--plan", "w.json"}, [&](const call_t &call, const std::string &file) -> fate_t {
            constexpr std::array<uint64_t, 4> kinds = {SYS_write, SYS_ftruncate, SYS_fallocate,
                                                       SYS_fsync};
            const bool changes = file.ends_with("/two.cfg") &&
                                 std::count(kinds.begin(), kinds.end(), call.entry.nr) > 0;
            if (!changes || reached++ != at)
                return {};
            return {.most = writes(call) ? most : ~0ul, .is_last = true};
        });
        seen.insert(states(with_plan("preview", {"--json"})));
        return reached > at;
    };
    int kills = 0;
    for (const char *verb : {"convert", "undo"}) {
        for (const char *next : {"convert", "undo"}) {
            for (const size_t most : {size_t{1}, converted.size() / 2, converted.size()}) {
                for (int at = 0;; at++, kills++) {
                    ASSERT_EQ(with_plan(std::string(verb) == "undo" ? "convert" : "undo").status,
                              0);
                    if (!kill_at(verb, at, most))
                        break;
                    EXPECT_EQ(with_plan(next).status, 0) << verb << at << next << most;
                    const bool forward = std::string(next) == "convert";
                    for (const char *name : {"site/two.cfg", "second name"})
                        EXPECT_EQ(here->read(name), forward ? converted : original)
                            << verb << at << next << most;
                }
            }
        }
    }
    EXPECT_GE(kills, 2 * 2 * 3 * 3);
    EXPECT_EQ(seen, (std::set<std::string>{"converted", "ready", "torn"}));
}

TEST_F(faults_t, what_the_machine_kept_from_being_looked_at_is_told_so_then_and_later) {
    here->write("site/a.cfg", original);
    here->write("site/b.cfg", original);
    const judge_t no_memory = [](const call_t &call, const std::string &file) -> fate_t {
        const bool reads = call.entry.nr == SYS_read && file.ends_with("/a.cfg");
        return {.error = reads ? ENOMEM : 0};
    };
    const auto saved = run(saving, no_memory);
    EXPECT_EQ(saved.status, 6);
    EXPECT_TRUE(contains(saved.out, "  blocked            1     the machine was in the way; "
                                    "another try may succeed\n"))
        << saved.out;
    for (const char *verb : {"preview", "convert"}) {
        const auto later = with_plan(verb);
        EXPECT_EQ(later.status, 6) << verb;
        EXPECT_TRUE(contains(later.out,
                             "  blocked: when the plan was made: Cannot allocate memory; "
                             "save another plan for it\n    site/a.cfg\n"))
            << later.out;
    }
    EXPECT_EQ(here->read("site/a.cfg"), original);
    const auto audited = run({"audit", "--from", "4.1(2)", "--to", "4.1(3)", "site"}, no_memory);
    EXPECT_EQ(audited.status, 6);
    EXPECT_TRUE(contains(audited.out, "1 blocked (another try may succeed)\n")) << audited.out;
}

TEST_F(faults_t, a_plan_that_is_not_saved_leaves_nothing_behind) {
    here->write("site/a.cfg", original);
    const auto is_plan = [](const std::string &file) {
        return contains(file, "/.w.json.infraconvert-");
    };
    const judge_t full = [&](const call_t &call, const std::string &file) -> fate_t {
        return {.error = writes(call) && is_plan(file) ? ENOSPC : 0};
    };
    EXPECT_EQ(run(saving, full).status, 6);
    EXPECT_FALSE(here->has("w.json.private"));

    int calls = 0;
    traced(saving).run([&](const call_t &) { return ++calls < 0; }, SIGTERM);
    ASSERT_TRUE(here->has("w.json.private/key"));
    for (int at = calls / 2; at <= calls; at += 9) {
        fs::remove_all(here->path("w.json.private"));
        fs::remove(here->path("w.json"));
        int reached = 0;
        traced(saving).run([&](const call_t &) { return ++reached == at; }, SIGTERM);
        EXPECT_EQ(here->has("w.json.private"), here->has("w.json")) << at << " of " << calls;
    }

    here->write("w.json.private/key", std::string(32, 'k')); // of an earlier plan
    chmod(here->path("w.json.private").c_str(), 0700);
    EXPECT_EQ(run(saving, full).status, 6);
    EXPECT_EQ(here->read("w.json.private/key"), std::string(32, 'k'));
}

} // namespace
