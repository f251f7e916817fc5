// A change window with the real command: killed, interrupted, disturbed, and taken back.

#include "infraconvert/commands/change_window.h"
#include "infraconvert/traced_command.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using support::arguments_t;
using support::change_window_t;
using support::contains;
using support::converted;
using support::lossy;
using support::original;

// ---- Kills ----

// At a sample of the system calls; what stands beside is written in place, because it has two
// names.
TEST_F(change_window_t, killed_at_a_system_call_is_gone_on_with_or_taken_back) {
    const bool all = getenv("INFRACONVERT_EVERY_SIGNAL") != nullptr;
    here->write("site/one.cfg", original);
    here->write("site/two.cfg", original);
    fs::create_hard_link(here->path("site/two.cfg"), here->path("second name"));
    ASSERT_EQ(save_plan().status, 0);
    const support::traced_command_t traced = {
        here->path(""), here->path(""), {"convert", "--plan", "w.json", "--jobs", "1"}};
    int calls = 0;
    traced.run([&](const auto &) { return ++calls < 0; }, SIGKILL);
    EXPECT_EQ(here->read("site/two.cfg"), converted);

    std::map<std::string, int> outcomes;
    for (int at = calls / 4, turn = 0; at <= calls; at += all ? 1 : 4, turn++) {
        for (const char *name : {"site/one.cfg", "site/two.cfg"})
            here->write(name, original);
        fs::remove_all(here->path("w.json.private/originals"));
        fs::remove(here->path("w.json.private/journal"));
        int reached = 0;
        traced.run([&](const auto &) { return ++reached == at; }, SIGKILL);
        outcomes[states(with_plan("preview", {"--json"}))]++;
        const bool forward = turn % 2 == 0;
        const auto next = with_plan(forward ? "convert" : "undo");
        EXPECT_EQ(next.status, 0) << at << next.out;
        for (const char *name : {"site/one.cfg", "site/two.cfg", "second name"})
            EXPECT_EQ(here->read(name), forward ? converted : original) << name << at;
        EXPECT_EQ(left_behind(), arguments_t{}) << at;
        if (!forward)
            continue;
        EXPECT_EQ(said("converted"),
                  (std::map<std::string, int>{{"site/one.cfg", 1}, {"site/two.cfg", 1}}))
            << at;
    }
    EXPECT_GT(outcomes["ready ready"], 0);
    EXPECT_GT(outcomes["converted ready"], 0);
    EXPECT_GT(outcomes["converted converted"], 0);
    EXPECT_TRUE(!all || outcomes["converted torn"] > 0);
}

// Kills a run of the plan once its journal has so many lines more.
void kill_after(const support::workspace_t &here, const char *verb, size_t lines) {
    const auto size = [&] {
        std::error_code ignored;
        const auto bytes = fs::file_size(here.path("w.json.private/journal"), ignored);
        return ignored ? 0 : bytes;
    };
    constexpr size_t line_size = 200;
    const size_t enough = size() + lines * line_size;
    const pid_t child = fork();
    if (child == 0) {
        const int nothing = open("/dev/null", O_RDWR);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        if (chdir(here.path("").c_str()) == 0)
            execl(support::command_path().c_str(), "infraconvert", verb, "--plan", "w.json",
                  nullptr);
        _exit(126);
    }
    using namespace std::chrono_literals;
    for (int i = 0; i < 20000 && size() < enough && waitpid(child, nullptr, WNOHANG) == 0; i++)
        std::this_thread::sleep_for(500us);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST_F(change_window_t, of_some_hundred_files_killed_at_random_loses_none) {
    constexpr int files = 300;
    const unsigned int seed = std::random_device()();
    RecordProperty("seed", std::to_string(seed));
    std::mt19937 random(seed);
    const auto name = [](int i) { return "site/leaf-" + std::to_string(i) + ".cfg"; };
    const auto text = [](const std::string &start, int i) {
        return start + "hostname leaf-" + std::to_string(i) + "\n";
    };
    for (int i = 0; i < files; i++)
        here->write(name(i), text(original, i));
    ASSERT_EQ(save_plan().status, 0);

    for (int kills = 0; kills < 5; kills++)
        kill_after(*here, "convert", random() % (2 * files / 6));
    EXPECT_EQ(with_plan("convert").status, 0);
    for (int i = 0; i < files; i++)
        EXPECT_EQ(here->read(name(i)), text(converted, i)) << seed;
    auto done = said("converted");
    EXPECT_EQ(done.size(), size_t{files});
    for (const auto &[path, times] : done)
        EXPECT_EQ(times, 1) << path << " " << seed;
    EXPECT_EQ(left_behind(), arguments_t{});

    for (int kills = 0; kills < 3; kills++)
        kill_after(*here, "undo", random() % (2 * files / 4));
    EXPECT_EQ(with_plan("undo").status, 0);
    for (int i = 0; i < files; i++)
        EXPECT_EQ(here->read(name(i)), text(original, i)) << seed;
    done = said("undone");
    EXPECT_EQ(done.size(), size_t{files});
    for (const auto &[path, times] : done)
        EXPECT_EQ(times, 1) << path << " " << seed;
    EXPECT_EQ(left_behind(), arguments_t{});
}

TEST_F(change_window_t, ended_by_a_signal_leaves_each_file_whole) {
    for (int i = 0; i < 40; i++)
        here->write("site/" + std::to_string(i) + ".cfg", original);
    ASSERT_EQ(save_plan().status, 0);
    const support::traced_command_t traced = {
        here->path(""), here->path(""), {"convert", "--plan", "w.json", "--jobs", "1"}};
    int syncs = 0;
    const int status = traced.run(
        [&](const auto &call) { return call.entry.nr == SYS_fsync && ++syncs == 30; }, SIGTERM);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    const size_t done = said("converted").size();
    EXPECT_GT(done, 2u);
    EXPECT_LT(done, 40u);
    EXPECT_LE(said("begin").size(), done + 1); // before the first byte it is not too late
    EXPECT_EQ(left_behind(), arguments_t{});
    EXPECT_EQ(with_plan("convert").status, 0);
}

// ---- Disturbances ----

TEST_F(change_window_t, makes_each_bad_entry_a_line) {
    here->write("site/a.cfg", original);
    here->write("site/edited.cfg", original);
    here->write("site/empty.cfg", "");
    here->write("site/lossy.cfg", lossy);
    here->write("site/vanished.cfg", original);
    const auto saved = save_plan();
    EXPECT_EQ(saved.status, 5) << saved.err;
    here->write("site/edited.cfg", original + "vlan 2\n");
    fs::remove(here->path("site/vanished.cfg"));
    const auto done = with_plan("convert", {"--json"});
    EXPECT_EQ(done.status, 5);
    EXPECT_EQ(states(done), "converted! stale unusable refused unusable") << done.out;
    EXPECT_EQ(here->read("site/edited.cfg"), original + "vlan 2\n");
    EXPECT_EQ(here->read("site/lossy.cfg"), lossy);
    const auto looked = with_plan("preview");
    EXPECT_EQ(looked.status, 5);
    EXPECT_TRUE(contains(looked.out, "4 need hands:\n")) << looked.out;
    EXPECT_TRUE(
        contains(looked.out, "  unusable: No such file or directory\n    site/vanished.cfg\n"))
        << looked.out;
    EXPECT_TRUE(contains(looked.out,
                         "  unusable: when the plan was made: the configuration is empty; "
                         "save another plan for it\n    site/empty.cfg\n"))
        << looked.out;
    const auto undone = with_plan("undo");
    EXPECT_EQ(undone.status, 0) << undone.out;
    EXPECT_EQ(undone.out, "w.json: 5 configurations\n"
                          "  put back           1\n"
                          "  nothing to undo    4\n");
    EXPECT_EQ(here->read("site/a.cfg"), original);
}

TEST_F(change_window_t, holds_no_text_of_a_configuration_for_others) {
    here->write("site/a.cfg", original + "username admin password Zebra-4711\n");
    here->write("site/b.cfg", lossy);
    ASSERT_EQ(preview({"--accept", "IC041,IC043", "--save-plan", "w.json", "site"}).status, 0);
    const std::string plan = here->read("w.json");
    EXPECT_FALSE(contains(plan, "Zebra") || contains(plan, "Ethernet") ||
                 contains(plan, "npiv\\n"));
    with_plan("convert");
    for (const std::string &name : here->names()) {
        struct stat status = {};
        const bool is_private = contains(name, "w.json.private");
        EXPECT_EQ(stat(here->path(name).c_str(), &status), 0);
        EXPECT_TRUE(!is_private || (status.st_mode & 077) == 0) << name;
    }
}

TEST_F(change_window_t, does_not_guess_what_its_private_folder_held) {
    here->write("site/a.cfg", original);
    ASSERT_EQ(save_plan().status, 0);
    ASSERT_EQ(with_plan("convert").status, 0);
    const std::string made = here->read("site/a.cfg");
    const std::string names[] = {"w.json.private/journal", "w.json.private/key"};
    const std::string others[] = {"", std::string(32, 'k')};
    for (size_t i = 0; i < 2; i++) {
        const std::string kept = here->read(names[i]);
        here->write(names[i], others[i]);
        for (const auto &result : {with_plan("undo"), with_plan("convert"), with_plan("preview")}) {
            EXPECT_EQ(result.status, 5) << names[i];
            EXPECT_TRUE(contains(result.err, names[i])) << result.err;
        }
        here->write(names[i], kept);
    }
    EXPECT_EQ(here->read("site/a.cfg"), made);
    EXPECT_EQ(with_plan("undo").status, 0);
    EXPECT_EQ(here->read("site/a.cfg"), original);
}

TEST_F(change_window_t, tells_of_many_alike_once) {
    for (int i = 10; i < 50; i++)
        here->write("site/" + std::to_string(i) + ".cfg", i % 2 == 0 ? lossy : "version 4.0(1)\n");
    const auto saved = save_plan();
    EXPECT_TRUE(contains(saved.out, "20 need hands:\n  refused: would lose something: "))
        << saved.out;
    EXPECT_TRUE(contains(saved.out, "    site/10.cfg, site/12.cfg, ")) << saved.out;
    EXPECT_TRUE(contains(saved.out, " and 8 more, which --json names\n")) << saved.out;
    EXPECT_TRUE(contains(saved.err, "warning: 20 configurations say that another release wrote "
                                    "them, such as site/11.cfg"))
        << saved.err;
}

TEST_F(change_window_t, can_be_applied_to_some_of_its_configurations) {
    for (const char *name : {"site/east/a.cfg", "site/west/b.cfg", "site/west/c.cfg"})
        here->write(name, original);
    ASSERT_EQ(save_plan().status, 0);
    EXPECT_EQ(states(with_plan("convert", {"--json", "site/west/c.cfg"})), "converted!");
    EXPECT_EQ(states(with_plan("preview", {"--json"})), "ready ready converted");
    EXPECT_EQ(states(with_plan("convert", {"--json", "site/west"})), "converted! converted");
    EXPECT_EQ(states(with_plan("undo", {"--json", "site/west/b.cfg"})), "ready!");
    EXPECT_EQ(states(with_plan("preview", {"--json"})), "ready ready converted");
    EXPECT_EQ(with_plan("convert", {"site/north"}).status, 2);
    EXPECT_EQ(with_plan("preview", {"--exit-code"}).status, 3);
}

TEST_F(change_window_t, is_for_one_run_at_a_time) {
    here->write("site/a.cfg", original);
    ASSERT_EQ(save_plan().status, 0);
    const int other = open(here->path("w.json.private/journal").c_str(), O_RDWR);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    for (const auto &result : {with_plan("convert"), with_plan("undo"), save_plan()}) {
        EXPECT_EQ(result.status, 6);
        EXPECT_TRUE(contains(result.err, "another run is at work with w.json")) << result.err;
    }
    EXPECT_EQ(with_plan("preview").status, 0);
    EXPECT_EQ(here->read("site/a.cfg"), original);
    close(other);
    EXPECT_EQ(with_plan("convert").status, 0);
    const auto over = save_plan(); // would lose the way back
    EXPECT_EQ(over.status, 5);
    EXPECT_TRUE(contains(over.err, "infraconvert undo --plan")) << over.err;
}

TEST_F(change_window_t, keeps_links_names_and_what_may_not_be_written) {
    if (!here->can_drop_rights())
        GTEST_SKIP() << "the command is out of reach without root's rights";
    here->write("real/switch.cfg", original);
    here->write("read only.cfg", original);
    here->write("caf\xe9.cfg", original);
    chmod(here->path("read only.cfg").c_str(), 0444);
    fs::create_symlink("real/switch.cfg", here->path("link.cfg"));
    here->unprivileged = geteuid() == 0;
    const arguments_t named = {"caf\xe9.cfg", "link.cfg", "read only.cfg"};
    arguments_t words = {"--save-plan", "w.json"};
    words.insert(words.end(), named.begin(), named.end());
    ASSERT_EQ(preview(words).status, 0);
    const auto done = with_plan("convert", {"--json"});
    EXPECT_EQ(states(done), "converted! converted! blocked");
    EXPECT_EQ(done.status, 6);
    EXPECT_TRUE(fs::is_symlink(here->path("link.cfg")));
    EXPECT_EQ(here->read("real/switch.cfg"), converted);
    EXPECT_EQ(here->read("read only.cfg"), original);
    EXPECT_EQ(states(with_plan("undo", {"--json"})), "ready! ready! ready");
    for (const char *name : {"caf\xe9.cfg", "real/switch.cfg", "read only.cfg"})
        EXPECT_EQ(here->read(name), original) << name;
}

TEST_F(change_window_t, applied_by_root_stays_with_who_saved_it) {
    if (geteuid() != 0 || !here->can_drop_rights())
        GTEST_SKIP() << "takes root, who lets go of his rights";
    here->write("site/a.cfg", original);
    here->unprivileged = true;
    ASSERT_EQ(save_plan().status, 0);
    here->unprivileged = false;
    ASSERT_EQ(with_plan("convert").status, 0);
    int looked_at = 0;
    for (const std::string &name : here->names()) {
        struct stat status = {};
        EXPECT_EQ(lstat(here->path(name).c_str(), &status), 0);
        looked_at += contains(name, "w.json.private");
        EXPECT_TRUE(!contains(name, "w.json.private") || status.st_uid != 0) << name;
    }
    EXPECT_EQ(looked_at, 5); // the folder, key, journal, originals and one of them
    EXPECT_EQ(with_plan("preview").status, 0);
    here->unprivileged = true;
    EXPECT_EQ(with_plan("undo").status, 0);
    EXPECT_EQ(here->read("site/a.cfg"), original);
}

// ---- Many without a plan ----

TEST_F(change_window_t, many_are_converted_each_by_itself) {
    here->write("site/a.cfg", original);
    here->write("site/b.cfg", "vlan 1\n");
    here->write("site/c.cfg", original);
    here->write("site/c.cfg.bak", "precious");
    here->write("site/d.cfg", "");
    const auto shown = preview({"--details", "site"});
    EXPECT_EQ(shown.status, 5);
    EXPECT_TRUE(contains(shown.out, "-feature npiv\n+npiv enable\n")) << shown.out;
    EXPECT_TRUE(contains(shown.err, "  ready              2\n")) << shown.err;
    const auto done = here->run(
        {"convert", "--from", "4.1(3)K2(1)", "--to", "4.1(2)", "--backup", "--json", "site"});
    EXPECT_EQ(done.status, 5);
    EXPECT_TRUE(contains(done.err, "without a plan there is no journal, ")) << done.err;
    EXPECT_EQ(states(done), "converted! unchanged unusable unusable") << done.out;
    EXPECT_EQ(here->read("site/a.cfg.bak"), original);
    EXPECT_EQ(here->read("site/c.cfg"), original);
    EXPECT_EQ(here->read("site/c.cfg.bak"), "precious");
}

} // namespace
